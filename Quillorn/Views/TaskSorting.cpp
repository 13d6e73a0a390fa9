#include "Views/TaskSorting.h"

#include "Models/ProjectTask.h"
#include "Models/Sorting.h"

#include <iterator>

namespace quillorn {

namespace {

constexpr std::string_view rawValues[] = {"Due Date", "Priority", "Title", "Created"};
static_assert(std::size(rawValues) == std::size(sortOrders));

Date dueOrLast(const ProjectTask& task) {
    return task.dueDate().value_or(Date::max());
}

} // namespace

std::string_view rawValue(SortOrder order) {
    return rawValues[static_cast<std::size_t>(order)];
}

std::optional<SortOrder> sortOrderFromRaw(std::string_view raw) {
    for (const SortOrder order : sortOrders)
        if (rawValue(order) == raw)
            return order;
    return std::nullopt;
}

bool isBefore(const ProjectTask& a, const ProjectTask& b, SortOrder order, const Text& text) {
    switch (order) {
    case SortOrder::dueDate:
        return dueOrLast(a) < dueOrLast(b);
    case SortOrder::priority:
        return a.priority() > b.priority();
    case SortOrder::title:
        return text.compare(a.title(), b.title()) < 0;
    case SortOrder::createdAt:
        return a.createdAt() > b.createdAt();
    }
    return false;
}

void sortTasks(std::vector<ProjectTask*>& tasks, SortOrder order, const Text& text) {
    switch (order) {
    case SortOrder::dueDate:
        return sortByKey(tasks, dueOrLast);
    case SortOrder::priority:
        return sortByKey(tasks, [](const ProjectTask& task) { return task.priority(); }, std::greater<>());
    case SortOrder::title:
        return sortByKey(
            tasks, [](const ProjectTask& task) { return std::string_view(task.title()); },
            [&](std::string_view a, std::string_view b) { return text.compare(a, b) < 0; });
    case SortOrder::createdAt:
        return sortLatestFirst(tasks, &ProjectTask::createdAt);
    }
}

} // namespace quillorn
