#pragma once

#include "Desktop/Screen.h"
#include "Views/TimeEntryFormSheet.h"

namespace quillorn {

/// The form of a time entry. Days are "2026-11-22", times of day "09:05".
class TimeEntryScreen final : public Screen {
    Q_OBJECT
    Q_PROPERTY(QString windowTitle READ windowTitle CONSTANT)
    Q_PROPERTY(bool isRunning READ isRunning CONSTANT)
    Q_PROPERTY(QString timeLabel READ timeLabel CONSTANT)
    Q_PROPERTY(QVariantList projects READ projects NOTIFY changed)
    Q_PROPERTY(QVariantList tasks READ tasks NOTIFY changed)
    Q_PROPERTY(QString project READ project WRITE setProject NOTIFY changed)
    Q_PROPERTY(QString task READ task WRITE setTask NOTIFY changed)
    Q_PROPERTY(QString title READ title WRITE setTitle NOTIFY changed)
    Q_PROPERTY(QString notes READ notes WRITE setNotes NOTIFY changed)
    Q_PROPERTY(QString day READ day NOTIFY changed)
    Q_PROPERTY(QString start READ start NOTIFY changed)
    Q_PROPERTY(QString end READ end NOTIFY changed)
    Q_PROPERTY(QString duration READ duration NOTIFY changed)
    Q_PROPERTY(bool isWarning READ isWarning NOTIFY changed)
    Q_PROPERTY(QString overlap READ overlap NOTIFY changed)
    Q_PROPERTY(QString fault READ fault NOTIFY changed)
    Q_PROPERTY(QVariantList quick READ quick CONSTANT)
    Q_PROPERTY(QVariantMap words READ words CONSTANT)

  public:
    TimeEntryScreen(const TimeEntryFormSheet::Environment& environment,
                    const TimeEntryFormSheet::Suggestion& suggestion)
        : m_view(environment, suggestion),
          m_changes(m_view.observe(telling())) {}
    TimeEntryScreen(const TimeEntryFormSheet::Environment& environment, const TimeEntry& entry)
        : m_view(environment, entry),
          m_changes(m_view.observe(telling())) {}

    QString windowTitle() const { return toQString(m_view.windowTitle()); }
    bool isRunning() const { return m_view.isRunning(); }
    QString timeLabel() const { return toQString(m_view.timeLabel()); }
    QVariantList projects() const { return choices(m_view.projects()); }
    QVariantList tasks() const { return choices(m_view.tasks()); }
    QString project() const { return textOf(m_view.project()); }
    void setProject(const QString& project) { m_view.setProject(toId(project)); }
    QString task() const { return textOf(m_view.task()); }
    void setTask(const QString& task) { m_view.setTask(toId(task)); }
    QString title() const { return toQString(m_view.title()); }
    void setTitle(const QString& title) { m_view.setTitle(title.toStdString()); }
    QString notes() const { return toQString(m_view.notes()); }
    void setNotes(const QString& notes) { m_view.setNotes(notes.toStdString()); }
    QString day() const;
    QString start() const { return timeOf(m_view.startTime()); }
    QString end() const { return timeOf(m_view.endTime()); }
    QString duration() const { return toQString(m_view.duration().text); }
    bool isWarning() const { return m_view.duration().isWarning; }
    QString overlap() const { return toQString(m_view.overlap().value_or("")); }
    QString fault() const { return toQString(m_view.fault().value_or("")); }
    /// {label, minutes}
    static QVariantList quick();
    static QVariantMap words();

    // False where the words are no day or time.
    Q_INVOKABLE bool setDay(const QString& text);
    Q_INVOKABLE bool setStart(const QString& text);
    Q_INVOKABLE bool setEnd(const QString& text);
    Q_INVOKABLE void chooseQuick(int minutes) { m_view.chooseQuick(minutes); }
    /// A second has passed.
    Q_INVOKABLE void tick() { m_view.update(); }
    Q_INVOKABLE bool save();

  private:
    static QVariantList choices(const std::vector<TimeEntryFormSheet::Choice>& choices);
    static QString textOf(const std::optional<UUID>& id) { return id ? toQString(id->string()) : QString(); }
    static QString timeOf(std::chrono::seconds time);

    TimeEntryFormSheet m_view;
    Observation m_changes;
};

} // namespace quillorn
