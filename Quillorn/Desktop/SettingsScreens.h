#pragma once

#include "Desktop/Screen.h"
#include "Desktop/Values.h"
#include "Platform/Crypto.h"
#include "Views/APISettingsView.h"
#include "Views/BackupSettingsView.h"
#include "Views/GeneralSettingsView.h"
#include "Views/NotificationSettingsView.h"
#include "Views/ReminderImportSettingsView.h"
#include "Views/SettingsView.h"
#include "Views/SyncSettingsView.h"

#include <QUrl>

namespace quillorn {

/// The tabs of the settings window.
class SettingsTabsScreen final : public Screen {
    Q_OBJECT
    Q_PROPERTY(QVariantList tabs READ tabs CONSTANT)
    Q_PROPERTY(int selected READ selected WRITE select NOTIFY changed)

  public:
    SettingsTabsScreen(SettingsStore& settings, MainQueue& queue)
        : m_view(settings, queue),
          m_changes(m_view.observe(telling())) {}

    static QVariantList tabs();
    int selected() const { return m_view.selectedTab() ? static_cast<int>(*m_view.selectedTab()) : -1; }
    void select(int tab);

  private:
    SettingsView m_view;
    Observation m_changes;
};

class GeneralSettingsScreen final : public Screen {
    Q_OBJECT
    Q_PROPERTY(bool showsCompleted READ showsCompleted WRITE setShowsCompleted NOTIFY changed)
    Q_PROPERTY(QStringList priorities READ priorities CONSTANT)
    Q_PROPERTY(int priority READ priority WRITE setPriority NOTIFY changed)
    Q_PROPERTY(QStringList completions READ completions CONSTANT)
    Q_PROPERTY(int completion READ completion WRITE setCompletion NOTIFY changed)
    Q_PROPERTY(QString completionHelp READ completionHelp NOTIFY changed)
    Q_PROPERTY(bool pushes READ pushes WRITE setPushes NOTIFY changed)
    Q_PROPERTY(QVariantMap words READ words CONSTANT)

  public:
    GeneralSettingsScreen(SettingsStore& settings, MainQueue& queue)
        : m_view(settings, queue),
          m_changes(m_view.observe(telling())) {}

    bool showsCompleted() const { return m_view.showsCompletedTasks(); }
    void setShowsCompleted(bool shows) {
        attempt([&] { m_view.setShowsCompletedTasks(shows); });
    }
    static QStringList priorities();
    int priority() const { return static_cast<int>(m_view.defaultPriority()); }
    void setPriority(int priority);
    static QStringList completions();
    int completion() const { return static_cast<int>(m_view.completion()); }
    void setCompletion(int completion);
    QString completionHelp() const { return toQString(m_view.completionHelp()); }
    bool pushes() const { return m_view.pushesToThoughtkeg(); }
    void setPushes(bool pushes) {
        attempt([&] { m_view.setPushesToThoughtkeg(pushes); });
    }
    static QVariantMap words();

  private:
    GeneralSettingsView m_view;
    Observation m_changes;
};

class APISettingsScreen final : public Screen {
    Q_OBJECT
    Q_PROPERTY(QString status READ status NOTIFY changed)
    Q_PROPERTY(bool isRunning READ isRunning NOTIFY changed)
    Q_PROPERTY(QString toggleButton READ toggleButton NOTIFY changed)
    Q_PROPERTY(QString lastError READ lastError NOTIFY changed)
    Q_PROPERTY(QString port READ port WRITE setPort NOTIFY changed)
    Q_PROPERTY(QString key READ key WRITE setKey NOTIFY changed)
    Q_PROPERTY(QString keyWarning READ keyWarning NOTIFY changed)
    Q_PROPERTY(bool startsAtLaunch READ startsAtLaunch WRITE setStartsAtLaunch NOTIFY changed)
    Q_PROPERTY(bool isExternal READ isExternal WRITE setExternal NOTIFY changed)
    Q_PROPERTY(bool requiresAuth READ requiresAuth WRITE setRequiresAuth NOTIFY changed)
    Q_PROPERTY(QString endpoint READ endpoint NOTIFY changed)
    Q_PROPERTY(QString mcpEndpoint READ mcpEndpoint NOTIFY changed)
    Q_PROPERTY(QString copyConfigButton READ copyConfigButton NOTIFY changed)
    Q_PROPERTY(QVariantMap words READ words CONSTANT)

  public:
    APISettingsScreen(APIServer& server, SettingsStore& settings, MainQueue& queue);

    QString status() const { return toQString(m_view.status()); }
    bool isRunning() const { return m_view.isRunning(); }
    QString toggleButton() const { return toQString(m_view.toggleButton()); }
    QString lastError() const { return toQString(m_view.lastError().value_or("")); }
    QString port() const { return toQString(m_view.port()); }
    void setPort(const QString& port) {
        attempt([&] { m_view.setPort(port.toStdString()); });
    }
    QString key() const { return toQString(m_view.key()); }
    void setKey(const QString& key) {
        attempt([&] { m_view.setKey(key.toStdString()); });
    }
    QString keyWarning() const { return toQString(m_view.keyWarning().value_or("")); }
    bool startsAtLaunch() const { return m_view.startsAtLaunch(); }
    void setStartsAtLaunch(bool starts) {
        attempt([&] { m_view.setStartsAtLaunch(starts); });
    }
    bool isExternal() const { return m_view.allowsExternalAccess(); }
    void setExternal(bool isExternal) {
        attempt([&] { m_view.setAllowsExternalAccess(isExternal); });
    }
    bool requiresAuth() const { return m_view.requiresAuthLocal(); }
    void setRequiresAuth(bool isRequired) {
        attempt([&] { m_view.setRequiresAuthLocal(isRequired); });
    }
    QString endpoint() const { return toQString(m_view.endpoint()); }
    QString mcpEndpoint() const { return toQString(m_view.mcpEndpoint()); }
    QString copyConfigButton() const { return toQString(m_view.copyConfigButton()); }
    static QVariantMap words();

    Q_INVOKABLE void toggle() {
        attempt([&] { m_view.toggle(); });
    }
    Q_INVOKABLE void generateKey() {
        attempt([&] { m_view.generateKey(); });
    }
    Q_INVOKABLE void copyConfig();
    Q_INVOKABLE void copyDirective();

  private:
    SystemRandom m_random;
    APISettingsView m_view;
    Observation m_changes;
};

class SyncSettingsScreen final : public Screen {
    Q_OBJECT
    Q_PROPERTY(QString status READ status NOTIFY changed)
    Q_PROPERTY(QString symbol READ symbol NOTIFY changed)
    Q_PROPERTY(QString network READ network NOTIFY changed)
    Q_PROPERTY(QString lastSynced READ lastSynced NOTIFY changed)
    Q_PROPERTY(QVariantMap words READ words CONSTANT)

  public:
    explicit SyncSettingsScreen(const SyncSettingsView::Environment& environment)
        : m_view(environment),
          m_changes(m_view.observe(telling())) {}

    QString status() const { return toQString(m_view.word()); }
    QString symbol() const { return toQString(m_view.symbol()); }
    QString network() const { return toQString(m_view.network()); }
    QString lastSynced() const { return toQString(m_view.lastSynced().value_or("")); }
    static QVariantMap words();

  private:
    SyncSettingsView m_view;
    Observation m_changes;
};

class BackupSettingsScreen final : public Screen {
    Q_OBJECT
    Q_PROPERTY(bool isAutomatic READ isAutomatic WRITE setAutomatic NOTIFY changed)
    Q_PROPERTY(QString folder READ folder NOTIFY changed)
    Q_PROPERTY(QString folderWarning READ folderWarning NOTIFY changed)
    Q_PROPERTY(QString lastBackup READ lastBackup NOTIFY changed)
    Q_PROPERTY(bool isBackingUp READ isBackingUp NOTIFY changed)
    Q_PROPERTY(QString lastResult READ lastResult NOTIFY changed)
    Q_PROPERTY(QString lastError READ lastError NOTIFY changed)
    Q_PROPERTY(bool isRestoring READ isRestoring NOTIFY changed)
    Q_PROPERTY(QString restoreButton READ restoreButton NOTIFY changed)
    Q_PROPERTY(QVariantMap words READ words CONSTANT)

  public:
    explicit BackupSettingsScreen(const BackupSettingsView::Environment& environment)
        : m_view(environment),
          m_changes(m_view.observe(telling())) {}

    bool isAutomatic() const { return m_view.isAutomatic(); }
    void setAutomatic(bool isAutomatic) {
        attempt([&] { m_view.setAutomatic(isAutomatic); });
    }
    QString folder() const { return toQString(m_view.folder().string()); }
    QString folderWarning() const { return toQString(m_view.folderWarning().value_or("")); }
    QString lastBackup() const { return toQString(m_view.lastBackup()); }
    bool isBackingUp() const { return m_view.isBackingUp(); }
    QString lastResult() const { return toQString(m_view.lastResult().value_or("")); }
    QString lastError() const { return toQString(m_view.lastError().value_or("")); }
    bool isRestoring() const { return m_view.isRestoring(); }
    QString restoreButton() const { return toQString(m_view.restoreButton()); }
    static QVariantMap words();

    Q_INVOKABLE void chooseFolder(const QUrl& folder) { m_view.chooseFolder(pathOf(folder)); }
    Q_INVOKABLE void backUpNow() { m_view.backUpNow(); }
    Q_INVOKABLE QVariantMap question(const QUrl& file) const {
        return toQuestion(BackupSettingsView::confirmationFor(pathOf(file)), "Restore");
    }
    Q_INVOKABLE void restore(const QUrl& file) { m_view.restore(pathOf(file)); }

  private:
    static std::filesystem::path pathOf(const QUrl& file) { return file.toLocalFile().toStdString(); }

    BackupSettingsView m_view;
    Observation m_changes;
};

class NotificationSettingsScreen final : public Screen {
    Q_OBJECT
    Q_PROPERTY(int permission READ permission NOTIFY changed)
    Q_PROPERTY(bool isOn READ isOn WRITE setOn NOTIFY changed)
    Q_PROPERTY(int hour READ hour NOTIFY changed)
    Q_PROPERTY(int minute READ minute NOTIFY changed)
    Q_PROPERTY(QVariantMap words READ words CONSTANT)

  public:
    NotificationSettingsScreen(LocalNotifications& notifications, std::function<void()> refreshAll,
                               SettingsStore& settings, MainQueue& queue)
        : m_view(notifications, std::move(refreshAll), settings, queue),
          m_changes(m_view.observe(telling())) {}

    int permission() const { return static_cast<int>(m_view.permission()); }
    bool isOn() const { return m_view.isOn(); }
    void setOn(bool isOn) {
        attempt([&] { m_view.setOn(isOn); });
    }
    int hour() const { return static_cast<int>(m_view.hour()); }
    int minute() const { return static_cast<int>(m_view.minute()); }
    static QVariantMap words();

    Q_INVOKABLE void enable() { m_view.enable(); }
    Q_INVOKABLE void setTime(int hour, int minute) {
        attempt([&] { m_view.setTime(hour, minute); });
    }

  private:
    NotificationSettingsView m_view;
    Observation m_changes;
};

class ReminderSettingsScreen final : public Screen {
    Q_OBJECT
    Q_PROPERTY(QVariant hasAccess READ hasAccess NOTIFY changed)
    Q_PROPERTY(QVariantList lists READ lists NOTIFY changed)
    Q_PROPERTY(bool isAutomatic READ isAutomatic WRITE setAutomatic NOTIFY changed)
    Q_PROPERTY(QStringList intervals READ intervals CONSTANT)
    Q_PROPERTY(int interval READ interval WRITE setInterval NOTIFY changed)
    Q_PROPERTY(bool completes READ completes WRITE setCompletes NOTIFY changed)
    Q_PROPERTY(QString explanation READ explanation CONSTANT)
    Q_PROPERTY(bool isConfigured READ isConfigured NOTIFY changed)
    Q_PROPERTY(bool isRunning READ isRunning NOTIFY changed)
    Q_PROPERTY(QVariantMap activity READ activity NOTIFY changed)
    Q_PROPERTY(QStringList recent READ recent NOTIFY changed)
    Q_PROPERTY(QVariantMap words READ words CONSTANT)

  public:
    ReminderSettingsScreen(ReminderImportService& service, SettingsStore& settings, const Clock& clock)
        : m_view(service, settings, clock),
          m_changes(m_view.observe(telling())) {}

    QVariant hasAccess() const { return toVariant(m_view.hasAccess()); }
    QVariantList lists() const;
    bool isAutomatic() const { return m_view.isAutomatic(); }
    void setAutomatic(bool isAutomatic) {
        attempt([&] { m_view.setAutomatic(isAutomatic); });
    }
    static QStringList intervals();
    int interval() const;
    void setInterval(int interval);
    bool completes() const { return m_view.completesReminders(); }
    void setCompletes(bool completes) {
        attempt([&] { m_view.setCompletesReminders(completes); });
    }
    static QString explanation() { return toQString(ReminderImportSettingsView::explanation()); }
    bool isConfigured() const { return m_view.isConfigured(); }
    bool isRunning() const { return m_view.isRunning(); }
    /// {lastRun, lastResult, nextRun, skipped}
    QVariantMap activity() const;
    QStringList recent() const;
    static QVariantMap words();

    Q_INVOKABLE void appear() { m_view.appear(); }
    Q_INVOKABLE void setChosen(const QString& list, bool isChosen) {
        attempt([&] { m_view.setChosen(list.toStdString(), isChosen); });
    }
    Q_INVOKABLE void runNow() { m_view.runNow(); }
    Q_INVOKABLE void recheckSkipped() { m_view.recheckSkipped(); }

  private:
    ReminderImportSettingsView m_view;
    Observation m_changes;
};

} // namespace quillorn
