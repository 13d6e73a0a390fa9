#include "Views/TaskGrouping.h"

#include "Models/Project.h"
#include "Models/ProjectTask.h"
#include "Models/Tag.h"
#include "Platform/Text.h"

#include <algorithm>
#include <iterator>
#include <unordered_map>

namespace quillorn {

namespace {

constexpr std::string_view rawValues[] = {"None", "Status", "Priority", "Project", "Due Date", "Tag"};
static_assert(std::size(rawValues) == std::size(groupings));

constexpr std::string_view statusKeys[] = {"todo", "inProgress", "review", "done"};
constexpr std::string_view priorityKeys[] = {"low", "medium", "high", "urgent"};

struct DueDateTexts {
    std::string_view key, title, symbol;
};
constexpr DueDateTexts dueDateTexts[] = {
    {"overdue", "Overdue", "exclamationmark.triangle.fill"},
    {"today", "Today", "calendar"},
    {"tomorrow", "Tomorrow", "sunrise"},
    {"thisWeek", "This Week", "calendar.badge.clock"},
    {"later", "Later", "calendar"},
    {"noDate", "No Due Date", "calendar.badge.minus"},
};

/// Behind all that have a name.
constexpr int lastRank = 1;

SectionHead headOf(const Project* project) {
    if (project == nullptr)
        return {.key = "none", .title = "No Project", .symbol = "folder", .rank = lastRank};
    return {
        .key = project->id().string(), .title = project->name(), .symbol = "folder.fill", .color = project->color()};
}

SectionHead headOf(const Tag& tag) {
    return {.key = tag.id().string(), .title = tag.name(), .symbol = "tag.fill", .color = tag.color()};
}

SectionHead headOf(TaskStatus status) {
    const auto rank = static_cast<int>(status);
    return {.key = std::string(statusKeys[rank]),
            .title = std::string(label(status)),
            .symbol = std::string(symbol(status)),
            .rank = rank};
}

SectionHead headOf(TaskPriority priority) {
    const auto rank = static_cast<int>(priority);
    return {.key = std::string(priorityKeys[rank]),
            .title = std::string(label(priority)),
            .mark = std::string(mark(priority)),
            .rank = rank};
}

SectionHead headOf(DueDateGroup group) {
    const auto rank = static_cast<int>(group);
    const DueDateTexts& texts = dueDateTexts[rank];
    return {.key = std::string(texts.key),
            .title = std::string(texts.title),
            .symbol = std::string(texts.symbol),
            .rank = rank};
}

} // namespace

std::string_view rawValue(GroupBy grouping) {
    return rawValues[static_cast<std::size_t>(grouping)];
}

std::optional<GroupBy> groupByFromRaw(std::string_view raw) {
    for (const GroupBy grouping : groupings)
        if (rawValue(grouping) == raw)
            return grouping;
    return std::nullopt;
}

GroupBy defaultGroupBy(const TaskFilter& filter) {
    switch (filter.kind) {
    case TaskFilter::Kind::today:
    case TaskFilter::Kind::upcoming:
        return GroupBy::dueDate;
    case TaskFilter::Kind::project:
        return GroupBy::status;
    case TaskFilter::Kind::tag:
    case TaskFilter::Kind::client:
        return GroupBy::project;
    case TaskFilter::Kind::all:
        break;
    }
    return GroupBy::none;
}

DueDateGroup dueDateGroup(const std::optional<Date>& dueDate, const TaskMoment& moment) {
    if (!dueDate)
        return DueDateGroup::noDate;
    if (*dueDate < moment.startOfToday)
        return DueDateGroup::overdue;
    if (*dueDate < moment.startOfTomorrow)
        return DueDateGroup::today;
    if (*dueDate < moment.endOfTomorrow)
        return DueDateGroup::tomorrow;
    return *dueDate < moment.endOfWeek ? DueDateGroup::thisWeek : DueDateGroup::later;
}

bool isBefore(const SectionHead& a, const SectionHead& b, const Text& text) {
    if (a.rank != b.rank)
        return a.rank < b.rank;
    const int titles = text.compare(a.title, b.title);
    return titles != 0 ? titles < 0 : a.key < b.key;
}

std::vector<SectionHead> sectionsOf(const ProjectTask& task, GroupBy grouping, const TaskMoment& moment) {
    switch (grouping) {
    case GroupBy::status:
        return {headOf(task.status())};
    case GroupBy::priority:
        return {headOf(task.priority())};
    case GroupBy::project:
        return {headOf(task.project())};
    case GroupBy::dueDate:
        return {headOf(dueDateGroup(task.dueDate(), moment))};
    case GroupBy::tag: {
        std::vector<SectionHead> heads;
        for (const Tag* tag : task.tags())
            heads.push_back(headOf(*tag));
        if (heads.empty())
            heads.push_back({.key = "none", .title = "No Tags", .symbol = "tag", .rank = lastRank});
        return heads;
    }
    case GroupBy::none:
        break;
    }
    return {{.key = "none", .title = ""}};
}

std::vector<TaskSection> groupTasks(const std::vector<ProjectTask*>& tasks, GroupBy grouping, const TaskMoment& moment,
                                    const Text& text) {
    std::vector<TaskSection> sections;
    if (grouping == GroupBy::none) {
        sections.push_back({{.key = "none", .title = ""}, tasks});
        return sections;
    }
    std::unordered_map<std::string, std::size_t> places;
    for (ProjectTask* task : tasks) {
        for (SectionHead& head : sectionsOf(*task, grouping, moment)) {
            const auto [place, isNew] = places.try_emplace(head.key, sections.size());
            if (isNew)
                sections.push_back({std::move(head), {}});
            sections[place->second].tasks.push_back(task);
        }
    }
    std::ranges::sort(sections,
                      [&](const TaskSection& a, const TaskSection& b) { return isBefore(a.head, b.head, text); });
    return sections;
}

} // namespace quillorn
