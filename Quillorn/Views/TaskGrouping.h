#pragma once

#include "Views/TaskMembership.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quillorn {

class ProjectTask;
class Text;

/// How a task list is divided into sections.
enum class GroupBy : std::uint8_t { none, status, priority, project, dueDate, tag };

inline constexpr GroupBy groupings[] = {GroupBy::none,    GroupBy::status,  GroupBy::priority,
                                        GroupBy::project, GroupBy::dueDate, GroupBy::tag};

/// As it is shown and kept: "None", "Status", "Priority", "Project", "Due Date", "Tag".
std::string_view rawValue(GroupBy grouping);
std::optional<GroupBy> groupByFromRaw(std::string_view raw);
/// What a list groups by before anybody chooses.
GroupBy defaultGroupBy(const TaskFilter& filter);

/// In the order of their sections.
enum class DueDateGroup : std::uint8_t { overdue, today, tomorrow, thisWeek, later, noDate };

/// By days: what is due earlier today is no section of its own.
DueDateGroup dueDateGroup(const std::optional<Date>& dueDate, const TaskMoment& moment);

/// What stands over a section.
struct SectionHead {
    /// The enum's case, the id of the project or tag, or "none".
    std::string key;
    std::string title;
    /// The name of a platform symbol, or an emoji mark in its place.
    std::string symbol{};
    std::string mark{};
    /// Of the project or tag; else empty.
    std::string color{};
    /// Before the order of titles: sections stand by rank.
    int rank = 0;

    friend bool operator==(const SectionHead&, const SectionHead&) = default;
};

bool isBefore(const SectionHead& a, const SectionHead& b, const Text& text);

/// The sections in which a task stands: one, but for tags, where it stands under each of its own.
std::vector<SectionHead> sectionsOf(const ProjectTask& task, GroupBy grouping, const TaskMoment& moment);

struct TaskSection {
    SectionHead head;
    std::vector<ProjectTask*> tasks;
};

/// The sections that have tasks, in their order; without grouping one, also for no tasks. Tasks keep their order.
std::vector<TaskSection> groupTasks(const std::vector<ProjectTask*>& tasks, GroupBy grouping, const TaskMoment& moment,
                                    const Text& text);

} // namespace quillorn
