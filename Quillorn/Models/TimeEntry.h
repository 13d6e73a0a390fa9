#pragma once

#include "Store/Entity.h"

#include <optional>
#include <string>

namespace quillorn {

class Project;
class ProjectTask;

/// A stretch of time on a task, on a project without a task, or on neither.
class TimeEntry final : public Entity {
  public:
    struct Arguments {
        ProjectTask* task = nullptr;
        Project* project = nullptr;
        Date startTime{};
        std::optional<std::string> notes{};
        std::optional<std::string> title{};
    };

    static const EntityType& entityType();

    Date startTime() const { return m_startTime; }
    void setStartTime(Date date);
    /// Absent while the entry runs.
    const std::optional<Date>& endTime() const { return m_endTime; }
    void setEndTime(std::optional<Date> date);
    const std::optional<std::string>& notes() const { return m_notes; }
    void setNotes(std::optional<std::string> notes);
    const std::optional<std::string>& title() const { return m_title; }
    void setTitle(std::optional<std::string> title);

    ProjectTask* task() const;
    void setTask(ProjectTask* task);
    /// The direct link, for time on a project without a task.
    Project* project() const;
    void setProject(Project* project);
    /// The row keys of the two, known without loading them; 0 for none and for what is not saved yet.
    RowKey taskKey() const { return keyOf(m_task); }
    RowKey projectKey() const { return keyOf(m_project); }

    bool isRunning() const { return !m_endTime; }
    /// In seconds; a running entry counts up to `now`.
    double duration(Date now) const { return secondsBetween(m_startTime, m_endTime.value_or(now)); }
    /// duration() in the clock form.
    std::string formattedDuration(Date now) const;
    std::string displayName() const;
    /// The same where the names of task and project are at hand; null for none.
    std::string displayName(const std::string* taskTitle, const std::string* projectName) const;

  private:
    friend class ModelContext;
    struct Table;

    TimeEntry() = default;
    void initialize(Arguments arguments);

    Date m_startTime{};
    std::optional<Date> m_endTime;
    std::optional<std::string> m_notes;
    std::optional<std::string> m_title;
    Reference<ProjectTask> m_task;
    Reference<Project> m_project;
};

} // namespace quillorn
