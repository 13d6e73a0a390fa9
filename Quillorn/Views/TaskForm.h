#pragma once

#include "Models/Enums.h"
#include "Platform/Date.h"
#include "Views/RecordForm.h"

#include <chrono>

namespace quillorn {

class Calendar;
class ProjectTask;

/// A due date as people choose it.
struct DueChoice {
    std::chrono::local_days day;
    /// Absent where only the day means something.
    std::optional<std::chrono::seconds> time{};

    static std::optional<DueChoice> of(const ProjectTask& task, const Calendar& calendar);
    Date date(const Calendar& calendar) const;

    friend bool operator==(const DueChoice&, const DueChoice&) = default;
};

struct TaskValues {
    std::string title{};
    std::string description{};
    std::optional<DueChoice> due{};
    TaskPriority priority = TaskPriority::medium;
    TaskStatus status = TaskStatus::todo;
    std::optional<UUID> project{};
    std::optional<UUID> parent{};
    std::vector<UUID> tags{};
    std::string sourceTitle{};
    std::string sourceURL{};

    friend bool operator==(const TaskValues&, const TaskValues&) = default;
};

class TaskForm final : public RecordForm<TaskValues> {
  public:
    static constexpr std::string_view noParent = "None (standalone task)";
    static constexpr std::string_view subtaskHelp =
        "Quick way to add a subtask to an existing task. Inherits parent's project.";
    static constexpr std::size_t mostParents = 20;

    /// A new task begins in a project, under a parent whose project it takes, or in neither.
    struct Suggestion {
        std::optional<UUID> project{};
        std::optional<UUID> parent{};
        std::optional<UUID> tag{};
    };
    TaskForm(const ViewEnvironment& environment, const Suggestion& suggestion);
    TaskForm(const ViewEnvironment& environment, const ProjectTask& task);

    std::vector<FormChoice> projects() const { return projectChoices(environment(), values().project); }
    std::vector<FormChoice> tags() const { return tagChoices(environment()); }
    /// Open tasks whose title holds the text and under which this one can stand.
    std::vector<FormChoice> parents(std::string_view search) const;
    void toggleTag(const UUID& tag);
    /// A new task goes to the project of its parent.
    void setParent(const std::optional<UUID>& parent);
    /// Reads "tomorrow 9:00" and the like; false, and nothing done, where it can't be read. Blank is no date.
    bool setDueText(std::string_view words);

    std::string_view namePrompt() const override { return "Title"; }
    std::vector<std::string> faults() const override;

  protected:
    UUID write(ModelContext& context, Date now) override;

  private:
    void update(ModelContext& context, ProjectTask& task, Date now) const;
};

void setDue(ProjectTask& task, const std::optional<DueChoice>& due, const Calendar& calendar);

/// What `words` mean as a due date; absent where they can't be read.
std::optional<DueChoice> readDue(std::string_view words, const ViewEnvironment& environment);

} // namespace quillorn
