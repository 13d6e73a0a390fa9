#pragma once

#include "App/AppSession.h"
#include "Desktop/AISettingsScreen.h"
#include "Desktop/ActivityLogScreen.h"
#include "Desktop/ChatScreen.h"
#include "Desktop/CommandLists.h"
#include "Desktop/DesktopSettingsScreen.h"
#include "Desktop/FormScreen.h"
#include "Desktop/NoteScreens.h"
#include "Desktop/QuickAddScreen.h"
#include "Desktop/RecordScreen.h"
#include "Desktop/ReminderImportScreen.h"
#include "Desktop/ScreenSlot.h"
#include "Desktop/SettingsScreens.h"
#include "Desktop/SidebarScreen.h"
#include "Desktop/TaskDetailScreen.h"
#include "Desktop/TaskListScreen.h"
#include "Desktop/TimeDashboardScreen.h"
#include "Desktop/TimeEntryScreen.h"
#include "Desktop/TimerScreen.h"
#include "Desktop/TodaySummaryScreen.h"
#include "Views/ContentView.h"
#include "Views/EditHistory.h"

#include <memory>

namespace quillorn {

/// The main window: what it shows in its columns, and what its menu does.
class DesktopApp final : public Screen {
    Q_OBJECT
    Q_PROPERTY(QObject* sidebar READ sidebar CONSTANT)
    Q_PROPERTY(QObject* timer READ timer CONSTANT)
    Q_PROPERTY(QString selection READ selection NOTIFY changed)
    Q_PROPERTY(QString title READ title NOTIFY changed)
    /// "taskList", "client", "project", "dailySummary", "activityLog", "allNotes", or "nothing".
    Q_PROPERTY(QString column READ column NOTIFY changed)
    Q_PROPERTY(QVariantMap columnEmpty READ columnEmpty NOTIFY changed)
    Q_PROPERTY(QVariantMap detailEmpty READ detailEmpty NOTIFY changed)
    Q_PROPERTY(QString selectedTask READ selectedTask NOTIFY changed)
    Q_PROPERTY(QString selectedNote READ selectedNote NOTIFY changed)
    Q_PROPERTY(QObject* tasks READ tasks NOTIFY changed)
    Q_PROPERTY(QObject* record READ record NOTIFY changed)
    Q_PROPERTY(QObject* time READ time NOTIFY changed)
    Q_PROPERTY(QObject* notes READ notes NOTIFY changed)
    Q_PROPERTY(QObject* chat READ chat NOTIFY changed)
    Q_PROPERTY(QObject* summary READ summary NOTIFY changed)
    Q_PROPERTY(QObject* activity READ activity NOTIFY changed)
    Q_PROPERTY(QObject* task READ task NOTIFY changed)
    Q_PROPERTY(QObject* note READ note NOTIFY changed)
    /// The form that is open, and that of a time entry.
    Q_PROPERTY(QObject* form READ form NOTIFY changed)
    Q_PROPERTY(QObject* entry READ entry NOTIFY changed)
    Q_PROPERTY(QObject* quickAdd READ quickAdd NOTIFY changed)
    Q_PROPERTY(QObject* reminderImport READ reminderImport NOTIFY changed)
    Q_PROPERTY(QVariantList menu READ menu CONSTANT)
    Q_PROPERTY(QVariantList keys READ keys CONSTANT)
    Q_PROPERTY(QVariantMap titles READ titles CONSTANT)
    Q_PROPERTY(QVariantMap goToWords READ goToWords CONSTANT)
    Q_PROPERTY(QString serverState READ serverState NOTIFY changed)
    Q_PROPERTY(bool isServing READ isServing NOTIFY changed)
    Q_PROPERTY(bool canUndo READ canUndo NOTIFY changed)
    Q_PROPERTY(bool canRedo READ canRedo NOTIFY changed)
    Q_PROPERTY(QString undoTitle READ undoTitle NOTIFY changed)
    Q_PROPERTY(QString redoTitle READ redoTitle NOTIFY changed)
    Q_PROPERTY(QStringList statuses READ statuses CONSTANT)
    Q_PROPERTY(QStringList priorities READ priorities CONSTANT)
    Q_PROPERTY(QObject* settingsTabs READ settingsTabs CONSTANT)
    Q_PROPERTY(QObject* generalSettings READ generalSettings CONSTANT)
    Q_PROPERTY(QObject* desktopSettings READ desktopSettings CONSTANT)
    Q_PROPERTY(QObject* apiSettings READ apiSettings CONSTANT)
    Q_PROPERTY(QObject* syncSettings READ syncSettings CONSTANT)
    Q_PROPERTY(QObject* backupSettings READ backupSettings CONSTANT)
    Q_PROPERTY(QObject* notificationSettings READ notificationSettings CONSTANT)
    Q_PROPERTY(QObject* aiSettings READ aiSettings CONSTANT)
    Q_PROPERTY(QObject* reminderSettings READ reminderSettings CONSTANT)

  public:
    /// Without a shortcut the desktop has none for this program.
    DesktopApp(AppSession& world, const ViewEnvironment& environment, SystemLog& log, GlobalShortcut* shortcut);

    QObject* sidebar() { return &m_sidebar; }
    QObject* timer() { return &m_timer; }
    QString selection() const;
    QString title() const;
    QString column() const;
    QVariantMap columnEmpty() const { return toMap(m_content.contentColumn().emptyState); }
    QVariantMap detailEmpty() const { return toMap(m_content.detailColumn().emptyState); }
    QString selectedTask() const { return textOf(m_content.selectedTask()); }
    QString selectedNote() const { return textOf(m_content.selectedNote()); }
    QObject* tasks() { return m_tasks.get(); }
    QObject* record() { return m_record.get(); }
    QObject* time() { return m_time.get(); }
    QObject* notes() { return m_notes.get(); }
    QObject* chat() { return m_chat.get(); }
    QObject* summary() { return m_summary.get(); }
    QObject* activity() { return m_activity.get(); }
    QObject* task() { return m_task.get(); }
    QObject* note() { return m_note.get(); }
    QObject* form() { return m_form.get(); }
    QObject* entry() { return m_entry.get(); }
    QObject* quickAdd() { return m_quickAdd.get(); }
    QObject* reminderImport() { return m_reminderImport.get(); }
    static QVariantList menu() { return menuList(); }
    static QVariantList keys() { return keyList(); }
    static QVariantMap titles() { return commandTitles(); }
    static QVariantMap goToWords();
    QString serverState() const;
    bool isServing() const;
    bool canUndo() const { return m_environment.history.canUndo(); }
    bool canRedo() const { return m_environment.history.canRedo(); }
    QString undoTitle() const { return toQString(m_environment.history.undoTitle()); }
    QString redoTitle() const { return toQString(m_environment.history.redoTitle()); }
    static QStringList statuses() { return TaskListScreen::statuses(); }
    static QStringList priorities() { return TaskListScreen::priorities(); }
    QObject* settingsTabs() { return &m_settingsTabs; }
    QObject* generalSettings() { return &m_generalSettings; }
    QObject* desktopSettings() { return &m_desktopSettings; }
    QObject* apiSettings() { return &m_apiSettings; }
    QObject* syncSettings() { return &m_syncSettings; }
    QObject* backupSettings() { return &m_backupSettings; }
    QObject* notificationSettings() { return &m_notificationSettings; }
    QObject* aiSettings() { return &m_aiSettings; }
    QObject* reminderSettings() { return &m_reminderSettings; }

    /// The window has come up.
    Q_INVOKABLE void restore() { m_content.restore(); }
    Q_INVOKABLE void selectRow(int row);
    Q_INVOKABLE void selectTask(const QString& task) { m_content.selectTask(toId(task)); }
    Q_INVOKABLE void selectNote(const QString& note);
    /// "client", "project", "tag", "task" or "note"; without a record the key of a smart list.
    Q_INVOKABLE void show(const QString& kind, const QString& record);
    /// What a row of the activity log is about.
    Q_INVOKABLE void showActivity(int kind, const QString& record);
    /// A command of the menu, by its name.
    Q_INVOKABLE void command(const QString& name);
    Q_INVOKABLE void undo();
    Q_INVOKABLE void redo();
    Q_INVOKABLE QVariantList goToChoices(const QString& search) const { return goToList(m_environment, search); }
    /// What was carried with the task was dropped on a row of the sidebar.
    Q_INVOKABLE void dropTasks(const QString& task, int row);
    Q_INVOKABLE void closeQuickAdd();
    Q_INVOKABLE void closeReminderImport();
    /// The form was closed, with the record that it has kept or none.
    Q_INVOKABLE void closeForm(const QString& saved);
    Q_INVOKABLE void editEntry(const QString& entry);
    Q_INVOKABLE void closeEntry();
    /// Shows the record of a quillorn:// address; does nothing for any other.
    Q_INVOKABLE void open(const QString& address);

  Q_SIGNALS:
    /// A command that is the window's own.
    void commanded(const QString& name);

  private:
    static QString textOf(const std::optional<UUID>& id) { return id ? toQString(id->string()) : QString(); }
    void update();
    void showColumn(const ContentView::Column& column);
    void showTasks(const TaskFilter& filter);
    void showNotes(const NoteScope& scope);
    void showRecord(bool isProject, const UUID& id);
    void showDetail();
    void showSheet();
    void openQuickAdd();
    void openReminderImport();
    void dayChanged();
    void openForm(std::unique_ptr<FormScreen> form);
    TimeEntryFormSheet::Environment entryEnvironment() const;
    template <typename Type>
    Type* watched(Type* screen) {
        connect(screen, &Screen::failed, this, &Screen::failed);
        return screen;
    }

    AppSession& m_world;
    ViewEnvironment m_environment;
    GlobalSceneStorage m_scene;
    ContentView m_content;
    SidebarScreen m_sidebar;
    TimerScreen m_timer;
    SettingsTabsScreen m_settingsTabs;
    GeneralSettingsScreen m_generalSettings;
    DesktopSettingsScreen m_desktopSettings;
    APISettingsScreen m_apiSettings;
    SyncSettingsScreen m_syncSettings;
    BackupSettingsScreen m_backupSettings;
    NotificationSettingsScreen m_notificationSettings;
    AISettingsScreen m_aiSettings;
    ReminderSettingsScreen m_reminderSettings;
    /// Of which the screens below are.
    std::optional<SidebarItem> m_shown;
    ScreenSlot<TaskListScreen> m_tasks;
    ScreenSlot<RecordScreen> m_record;
    ScreenSlot<TimeDashboardScreen> m_time;
    ScreenSlot<NoteListScreen> m_notes;
    ScreenSlot<ChatScreen> m_chat;
    ScreenSlot<TodaySummaryScreen> m_summary;
    ScreenSlot<ActivityLogScreen> m_activity;
    ScreenSlot<TaskDetailScreen> m_task;
    ScreenSlot<NoteScreen> m_note;
    ScreenSlot<FormScreen> m_form;
    ScreenSlot<TimeEntryScreen> m_entry;
    ScreenSlot<QuickAddScreen> m_quickAdd;
    ScreenSlot<ReminderImportScreen> m_reminderImport;
    /// Whether the form is the sidebar's, else the window's.
    bool m_isSidebarsForm = false;
    std::vector<Observation> m_observations;
};

} // namespace quillorn
