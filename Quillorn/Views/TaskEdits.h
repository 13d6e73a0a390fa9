#pragma once

#include "Models/Enums.h"
#include "Models/TaskActions.h"
#include "Platform/UUID.h"
#include "Views/ViewEnvironment.h"

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quillorn {

using TaskIds = std::vector<UUID>;

/// What the menu of these tasks says, and offers beyond what it always has.
struct TaskMenu {
    static constexpr std::string_view startTimer = "Start Timer";
    static constexpr std::string_view statusTitle = "Status";
    static constexpr std::string_view priorityTitle = "Priority";
    static constexpr std::string_view dueTitle = "Due Date";
    static constexpr std::string_view projectTitle = "Move to Project";
    static constexpr std::string_view tagsTitle = "Tags";
    static constexpr std::string_view none = "None";
    static constexpr std::string_view convert = "Convert to Standalone";
    static constexpr std::string_view duplicate = "Duplicate";
    static constexpr std::string_view remove = "Delete…";
    struct DueChoice {
        std::string_view label;
        int days; // from today
    };
    static constexpr DueChoice dueChoices[] = {{"Today", 0}, {"Tomorrow", 1}, {"In a Week", 7}};

    /// "Mark Complete", or "Mark Incomplete" where all are completed.
    std::string completion;
    /// Of all of them, where it is the same.
    std::optional<TaskStatus> status{};
    std::optional<TaskPriority> priority{};
    bool canAddSubtask = false;
    bool canConvertToStandalone = false;

    friend bool operator==(const TaskMenu&, const TaskMenu&) = default;
};

/// What is done to the tasks that are selected, by rows and menus: each call is one step to undo. Ids of tasks that are
/// gone are passed over.
class TaskEdits {
  public:
    explicit TaskEdits(const ViewEnvironment& environment) : m_environment(environment) {}

    /// Completes them while one of them is open, else reopens all.
    void toggleCompleted(const TaskIds& ids);
    void setStatus(const TaskIds& ids, TaskStatus status);
    void setPriority(const TaskIds& ids, TaskPriority priority);
    void setDueDate(const TaskIds& ids, std::optional<Date> date, bool hasTime);
    void setTag(const TaskIds& ids, const UUID& tag, bool isOn);
    /// To no project without one. A project that is gone moves nothing.
    void moveToProject(const TaskIds& ids, const std::optional<UUID>& project);
    void duplicate(const TaskIds& ids);
    void convertToStandalone(const TaskIds& ids);
    /// Under the task, in its project. Absent, and nothing done, for a blank title and a task that is gone.
    std::optional<UUID> addSubtask(const UUID& parent, std::string_view title);
    TaskMenu menu(const TaskIds& ids) const;

    /// What to ask before remove(); absent when none of them is there.
    std::optional<Confirmation> deletion(const TaskIds& ids) const;
    /// Can't be undone.
    void remove(const TaskIds& ids);

    std::vector<ProjectTask*> find(const TaskIds& ids) const;

  private:
    using Edit = std::function<void(ProjectTask& task, Date now)>;
    void perform(std::string_view verb, const TaskIds& ids, const Edit& edit);

    ViewEnvironment m_environment;
};

} // namespace quillorn
