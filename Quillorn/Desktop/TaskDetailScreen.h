#pragma once

#include "Desktop/ListModel.h"
#include "Desktop/Screen.h"
#include "Desktop/Values.h"
#include "Views/TaskDetailView.h"

namespace quillorn {

/// All about one task. Fields are named "title", "description", "sourceTitle" and "sourceURL".
class TaskDetailScreen final : public Screen {
    Q_OBJECT
    Q_PROPERTY(QString taskId READ taskId CONSTANT)
    Q_PROPERTY(bool isGone READ isGone NOTIFY changed)
    Q_PROPERTY(QVariantMap fields READ fields NOTIFY changed)
    /// Somebody else has changed what is being edited.
    Q_PROPERTY(QString warning READ warning NOTIFY changed)
    Q_PROPERTY(QVariantMap words READ words NOTIFY changed)
    Q_PROPERTY(QVariantList path READ path NOTIFY changed)
    Q_PROPERTY(QString error READ error NOTIFY changed)
    Q_PROPERTY(bool isTiming READ isTiming NOTIFY changed)
    Q_PROPERTY(QAbstractItemModel* subtasks READ subtasks CONSTANT)
    Q_PROPERTY(QAbstractItemModel* entries READ entries CONSTANT)
    Q_PROPERTY(QAbstractItemModel* comments READ comments CONSTANT)
    Q_PROPERTY(QAbstractItemModel* tags READ tags CONSTANT)
    Q_PROPERTY(QVariantMap texts READ texts CONSTANT)

  public:
    TaskDetailScreen(const ViewEnvironment& environment, const UUID& task, std::function<APIConfig()> config);

    /// Keeps what is being typed.
    bool leaveAll() { return m_view.leaveAll(); }

    QString taskId() const { return toQString(m_view.id().string()); }
    bool isGone() const { return m_view.isGone(); }
    QVariantMap fields() const;
    QString warning() const;
    QVariantMap words() const;
    QVariantList path() const;
    QString error() const { return toQString(m_view.error()); }
    bool isTiming() const { return m_view.isTiming(); }
    QAbstractItemModel* subtasks() { return &m_subtasks; }
    QAbstractItemModel* entries() { return &m_entries; }
    QAbstractItemModel* comments() { return &m_comments; }
    QAbstractItemModel* tags() { return &m_tags; }
    static QVariantMap texts();

    Q_INVOKABLE void type(const QString& field, const QString& text);
    Q_INVOKABLE void leave(const QString& field);
    Q_INVOKABLE void revert(const QString& field);
    Q_INVOKABLE void toggleCompleted() { m_view.toggleCompleted(); }
    Q_INVOKABLE void setStatus(int status);
    Q_INVOKABLE void setPriority(int priority);
    /// False where the words can't be read.
    Q_INVOKABLE bool setDue(const QString& words) { return m_view.setDueText(words.toStdString()); }
    /// {id, name, color}
    Q_INVOKABLE QVariantList tagChoices() const;
    Q_INVOKABLE QVariantList projectChoices() const;
    Q_INVOKABLE void toggleTag(const QString& tag);
    /// To no project without one.
    Q_INVOKABLE void move(const QString& project) { m_view.move(toId(project)); }
    Q_INVOKABLE void addSubtask(const QString& title) { m_view.addSubtask(title.toStdString()); }
    Q_INVOKABLE void toggleSubtask(const QString& subtask);
    Q_INVOKABLE void toggleTimer() { m_view.toggleTimer(); }
    Q_INVOKABLE void addComment(const QString& text) { m_view.addComment(text.toStdString()); }
    Q_INVOKABLE QVariantMap deletionOfComment(const QString& comment) const;
    Q_INVOKABLE void removeComment(const QString& comment);
    Q_INVOKABLE void copyForAgent() const;
    Q_INVOKABLE QVariantMap deletion() const { return toQuestion(m_view.deletion()); }
    Q_INVOKABLE void remove() { m_view.remove(); }

  private:
    TaskDetailView m_view;
    ListModel<TaskDetailView::SubtaskRow> m_subtasks;
    ListModel<TaskDetailView::EntryRow> m_entries;
    ListModel<TaskDetailView::CommentRow> m_comments;
    ListModel<FormChoice> m_tags;
    Observation m_changes;
};

} // namespace quillorn
