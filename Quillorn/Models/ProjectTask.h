#pragma once

#include "Models/Enums.h"
#include "Store/Entity.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace quillorn {

class Note;
class Project;
class Tag;
class TimeEntry;

/// Posted synchronously when a task passes from not completed to completed. The object is the ProjectTask*, valid on
/// the posting thread; the user info holds its id as UUID under "taskId".
inline constexpr std::string_view quillornTaskCompleted = "quillornTaskCompleted";

/// Something to do, in a project or standalone, on its own or under a parent.
class ProjectTask final : public Entity {
  public:
    struct Arguments {
        std::string title{};
        std::optional<std::string> taskDescription{};
        std::optional<Date> dueDate{};
        TaskPriority priority = TaskPriority::medium;
        /// Only stored: a task made as done is not completed before a status operation says so.
        TaskStatus status = TaskStatus::todo;
        Project* project = nullptr;
    };

    static const EntityType& entityType();

    const std::string& title() const { return m_title; }
    void setTitle(std::string title);
    const std::optional<std::string>& taskDescription() const { return m_taskDescription; }
    void setTaskDescription(std::optional<std::string> description);
    const std::optional<Date>& dueDate() const { return m_dueDate; }
    void setDueDate(std::optional<Date> date);
    /// Whether the time of day in dueDate() means something.
    bool dueHasTime() const { return m_dueHasTime; }
    void setDueHasTime(bool hasTime);
    const std::optional<Date>& completedAt() const { return m_completedAt; }
    TaskPriority priority() const { return m_priority; }
    void setPriority(TaskPriority priority);
    TaskStatus status() const { return m_status; }
    std::int64_t sortOrder() const { return m_sortOrder; }
    void setSortOrder(std::int64_t order);
    /// Label of and link to the place that the task came from.
    const std::optional<std::string>& sourceTitle() const { return m_sourceTitle; }
    void setSourceTitle(std::optional<std::string> title);
    const std::optional<std::string>& sourceURL() const { return m_sourceURL; }
    void setSourceURL(std::optional<std::string> url);
    Date createdAt() const { return m_createdAt; }
    Date updatedAt() const { return m_updatedAt; }
    void setUpdatedAt(Date date);

    Project* project() const;
    void setProject(Project* project);
    /// Callers refuse a task as its own ancestor.
    ProjectTask* parentTask() const;
    void setParentTask(ProjectTask* parent);
    /// Its row key, known without loading it; 0 for none and for what is not saved yet.
    RowKey parentKey() const { return keyOf(m_parentTask); }
    const List<TimeEntry>& timeEntries() const;
    const List<Note>& notes() const;
    const List<Tag>& tags() const;
    void setTags(const std::vector<Tag*>& tags);
    const List<ProjectTask>& subtasks() const;

    /// The two operations that change completion; nothing else does. Passing from not completed to completed ends all
    /// running time entries of this task at `date` and posts quillornTaskCompleted. Neither saves.
    ///
    /// A status other than done reopens; done keeps an earlier completion date.
    void setStatus(TaskStatus status, Date date);
    /// Completing again moves the completion date; reopening turns done into to do and keeps other states.
    void setCompleted(bool completed, Date date);

    bool isCompleted() const { return m_completedAt.has_value(); }
    /// By the exact instant, also for a date without a time.
    bool isOverdue(Date now) const { return m_dueDate && !m_completedAt && *m_dueDate < now; }
    /// In seconds; a running entry counts up to `now`.
    double totalTimeSpent(Date now) const;
    std::size_t subtaskCount() const { return subtasks().size(); }
    /// Number of ancestors. A chain that runs into a circle ends where it would repeat.
    std::size_t depth() const;
    /// Whether listings hide it: its project, or that project's client, is archived.
    bool isHidden() const;

  private:
    friend class ModelContext;
    struct Table;

    ProjectTask() = default;
    void initialize(Arguments arguments, Date now);
    void setCompletedAt(std::optional<Date> date);
    void assignStatus(TaskStatus status);
    void runCompletionEffects(Date date);

    std::string m_title;
    std::optional<std::string> m_taskDescription;
    std::optional<Date> m_dueDate;
    bool m_dueHasTime = false;
    std::optional<Date> m_completedAt;
    TaskPriority m_priority = TaskPriority::medium;
    TaskStatus m_status = TaskStatus::todo;
    std::int64_t m_sortOrder = 0;
    std::optional<std::string> m_sourceTitle;
    std::optional<std::string> m_sourceURL;
    Date m_createdAt{};
    Date m_updatedAt{};
    Reference<Project> m_project;
    Reference<ProjectTask> m_parentTask;
    List<TimeEntry> m_timeEntries;
    List<Note> m_notes;
    List<Tag> m_tags;
    List<ProjectTask> m_subtasks;
};

} // namespace quillorn
