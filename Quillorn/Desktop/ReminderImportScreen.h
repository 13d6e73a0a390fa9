#pragma once

#include "Desktop/ListModel.h"
#include "Desktop/Screen.h"
#include "Views/ReminderImportSheet.h"

namespace quillorn {

/// A reminder that is decided upon, as its row shows it.
struct ReminderTriageRow {
    std::string id;
    std::string title;
    std::string source;
    std::vector<std::string> remarks;
    /// Why it would not be filed; empty for one that passes.
    std::string skipReason;
    std::optional<UUID> project;
    TaskPriority priority = TaskPriority::medium;
    bool isIncluded = false;

    friend bool operator==(const ReminderTriageRow&, const ReminderTriageRow&) = default;
};

/// The sheet in which a person decides on each open reminder.
class ReminderImportScreen final : public Screen {
    Q_OBJECT
    /// "setup", "review" or "result".
    Q_PROPERTY(QString stage READ stage NOTIFY changed)
    Q_PROPERTY(bool isBusy READ isBusy NOTIFY changed)
    Q_PROPERTY(QString busyWords READ busyWords NOTIFY changed)
    Q_PROPERTY(QString error READ error NOTIFY changed)
    /// What stands in the way of a scan, or of a review; empty for nothing.
    Q_PROPERTY(QString hindrance READ hindrance NOTIFY changed)
    Q_PROPERTY(QVariantList lists READ lists NOTIFY changed)
    Q_PROPERTY(bool completes READ completes WRITE setCompletes NOTIFY changed)
    Q_PROPERTY(bool canScan READ canScan NOTIFY changed)
    Q_PROPERTY(QAbstractItemModel* rows READ rows CONSTANT)
    Q_PROPERTY(QString summary READ summary NOTIFY changed)
    Q_PROPERTY(QVariantList projects READ projects NOTIFY projectsChanged)
    Q_PROPERTY(QString importLabel READ importLabel NOTIFY changed)
    Q_PROPERTY(bool canImport READ canImport NOTIFY changed)
    Q_PROPERTY(QString resultLine READ resultLine NOTIFY changed)
    Q_PROPERTY(QStringList failures READ failures NOTIFY changed)
    Q_PROPERTY(QVariantMap words READ words CONSTANT)

  public:
    ReminderImportScreen(ReminderImportService& service, SettingsStore& settings, ModelContext& context);

    QString stage() const;
    bool isBusy() const { return m_view.isBusy(); }
    QString busyWords() const { return toQString(m_view.busyWords()); }
    QString error() const { return toQString(m_view.error().value_or("")); }
    QString hindrance() const { return toQString(m_view.hindrance()); }
    /// {name, isChosen}
    QVariantList lists() const;
    bool completes() const { return m_view.completes(); }
    void setCompletes(bool completes) {
        attempt([&] { m_view.setCompletes(completes); });
    }
    bool canScan() const { return m_view.canScan(); }
    QAbstractItemModel* rows() { return &m_model; }
    QString summary() const { return toQString(m_view.summary()); }
    /// {id, name}
    QVariantList projects() const;
    QString importLabel() const { return toQString(m_view.importLabel()); }
    bool canImport() const { return m_view.canImport(); }
    QString resultLine() const { return toQString(m_view.resultLine()); }
    QStringList failures() const;
    static QVariantMap words();

    void appear() { m_view.appear(); }
    Q_INVOKABLE void setChosen(const QString& list, bool isChosen) { m_view.select(list.toStdString(), isChosen); }
    Q_INVOKABLE void scan() { m_view.scan(); }
    Q_INVOKABLE void importChosen() { m_view.import(); }
    Q_INVOKABLE void back() { m_view.back(); }

    Q_INVOKABLE void setIncluded(int row, bool isIncluded);
    Q_INVOKABLE void setTitle(int row, const QString& title);
    Q_INVOKABLE void setProject(int row, const QString& project);
    Q_INVOKABLE void setPriority(int row, int priority);

  Q_SIGNALS:
    /// Not told with each edit, for it makes all choices anew.
    void projectsChanged();

  private:
    void show();
    /// Runs the work on the row, if there is one, and shows what came of it.
    template <typename Work>
    void edit(int row, const Work& work);

    ReminderImportSheet m_view;
    ObservableList<ReminderTriageRow> m_rows;
    ListModel<ReminderTriageRow> m_model;
    Observation m_changes;
};

} // namespace quillorn
