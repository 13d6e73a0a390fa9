#pragma once

#include "Desktop/ListModel.h"
#include "Desktop/Screen.h"
#include "Views/TaskListView.h"

namespace quillorn {

/// A list of tasks. Actions take the id of the row that they were called on, and mean the selection where that row is
/// part of it.
class TaskListScreen final : public Screen {
    Q_OBJECT
    Q_PROPERTY(QAbstractItemModel* rows READ rows CONSTANT)
    Q_PROPERTY(QString searchText READ searchText WRITE setSearchText NOTIFY changed)
    Q_PROPERTY(QString searchPrompt READ searchPrompt CONSTANT)
    Q_PROPERTY(bool hasMeetings READ hasMeetings NOTIFY changed)
    Q_PROPERTY(QString meeting READ meeting WRITE setMeeting NOTIFY changed)
    Q_PROPERTY(QString meetingButton READ meetingButton NOTIFY changed)
    Q_PROPERTY(QStringList sortOrders READ sortOrderLabels CONSTANT)
    Q_PROPERTY(int sortOrder READ sortOrder WRITE setSortOrder NOTIFY changed)
    Q_PROPERTY(QStringList groupings READ groupingLabels CONSTANT)
    Q_PROPERTY(int grouping READ grouping WRITE setGrouping NOTIFY changed)
    Q_PROPERTY(bool showsCompleted READ showsCompleted WRITE setShowsCompleted NOTIFY changed)
    Q_PROPERTY(QVariantMap emptyState READ emptyState NOTIFY changed)
    Q_PROPERTY(QVariantMap dashboard READ dashboard NOTIFY changed)
    Q_PROPERTY(QStringList statuses READ statuses CONSTANT)
    Q_PROPERTY(QStringList priorities READ priorities CONSTANT)
    Q_PROPERTY(QVariantMap words READ words CONSTANT)
    Q_PROPERTY(QVariantMap menuWords READ menuWords CONSTANT)

  public:
    TaskListScreen(const ViewEnvironment& environment, SceneStorage& scene, const TaskFilter& filter);

    TaskListView& view() { return m_view; }

    QAbstractItemModel* rows() { return &m_model; }
    QString searchText() const { return toQString(m_view.searchText()); }
    void setSearchText(const QString& text) { m_view.setSearchText(text.toStdString()); }
    static QString searchPrompt() { return toQString(TaskListView::searchPrompt); }
    bool hasMeetings() const { return m_view.hasMeetings(); }
    QString meeting() const { return toQString(m_view.meeting()); }
    void setMeeting(const QString& key) { m_view.setMeeting(key.toStdString()); }
    QString meetingButton() const { return toQString(m_view.meetingButton()); }
    static QStringList sortOrderLabels();
    int sortOrder() const { return static_cast<int>(m_view.sortOrder()); }
    void setSortOrder(int order);
    static QStringList groupingLabels();
    int grouping() const { return static_cast<int>(m_view.groupBy()); }
    void setGrouping(int grouping);
    bool showsCompleted() const { return m_view.showsCompleted(); }
    void setShowsCompleted(bool shows) {
        attempt([&] { m_view.setShowsCompleted(shows); });
    }
    QVariantMap emptyState() const;
    QVariantMap dashboard() const;
    static QStringList statuses();
    static QStringList priorities();

    static QVariantMap words();
    /// With `dueChoices`: [{label, days}].
    static QVariantMap menuWords();

    /// {key, label} of those that hold `typed`.
    Q_INVOKABLE QVariantList meetings(const QString& typed) const;
    Q_INVOKABLE static QString noMeetings(const QString& typed) {
        return toQString(TaskListView::noMeetings(typed.toStdString()));
    }
    Q_INVOKABLE void clearFilters() { m_view.clearFilters(); }
    Q_INVOKABLE void toggleDoneSection() { m_view.toggleDoneSection(); }
    Q_INVOKABLE void toggleDisclosure(const QString& task);
    Q_INVOKABLE void select(const QStringList& tasks);
    Q_INVOKABLE QStringList selection() const;

    /// {completion, status, priority, canConvert, projects: [{id, name}], tags: [{id, name, isOn}]}; a status or a
    /// priority that not all of them have is absent.
    Q_INVOKABLE QVariantMap menu(const QString& task);
    /// What is carried with the row of that title.
    Q_INVOKABLE QString carried(const QString& task, const QString& title) const;
    Q_INVOKABLE void toggleCompleted(const QString& task);
    Q_INVOKABLE void setStatus(const QString& task, int status);
    Q_INVOKABLE void setPriority(const QString& task, int priority);
    /// Days from today; none for no date.
    Q_INVOKABLE void setDueIn(const QString& task, const QVariant& days);
    Q_INVOKABLE void setTag(const QString& task, const QString& tag, bool isOn);
    /// To none without one.
    Q_INVOKABLE void moveToProject(const QString& task, const QString& project);
    Q_INVOKABLE void duplicate(const QString& task);
    Q_INVOKABLE void convertToStandalone(const QString& task);
    /// What to ask before remove(); empty when there is nothing to delete.
    Q_INVOKABLE QVariantMap deletion(const QString& task);
    Q_INVOKABLE void remove(const QString& task);

  private:
    TaskIds targets(const QString& task) const;
    template <typename Edit>
    void editTargets(const QString& task, const Edit& edit) {
        attempt([&] { edit(m_view.edits(), targets(task)); });
    }

    ViewEnvironment m_environment;
    TaskListView m_view;
    ListModel<TaskListRow> m_model;
    Observation m_changes;
};

} // namespace quillorn
