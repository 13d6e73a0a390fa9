#include "Models/TaskSearch.h"

#include "Platform/Text.h"
#include "Store/ModelContext.h"

#include <algorithm>
#include <utility>

namespace quillorn {

namespace {

// The plus signs keep the index on "project" out of it: nearly all rows are wanted, and reading them in the order of
// the table takes half the time.
constexpr const char* notArchived =
    "(+project IS NULL OR +project NOT IN (SELECT p.key FROM Project p LEFT JOIN Client c ON c.key = p.client "
    "WHERE p.isArchived OR coalesce(c.isArchived, 0)))";

/// By due date, those without one first, then as the store has them. Sorting the objects takes a third of the time that
/// SQLite takes to sort whole rows.
void sortByDueDate(std::vector<ProjectTask*>& tasks) {
    std::vector<std::pair<Date, ProjectTask*>> dated;
    dated.reserve(tasks.size());
    for (ProjectTask* task : tasks)
        dated.emplace_back(task->dueDate().value_or(Date::min()), task);
    std::stable_sort(dated.begin(), dated.end(), [](const auto& a, const auto& b) { return a.first < b.first; });
    std::transform(dated.begin(), dated.end(), tasks.begin(), [](const auto& entry) { return entry.second; });
}

Query queryFor(const TaskSearch& search) {
    Query query;
    const auto restrict = [&](const std::string& condition) {
        query.where += (query.where.empty() ? "" : " AND ") + condition;
    };
    const auto restrictTo = [&](const std::string& condition, const SQLValue& value) {
        restrict(condition);
        query.values.push_back(value);
    };
    if (!search.includeArchived)
        restrict(notArchived);
    if (search.projectId)
        restrictTo("project IN (SELECT key FROM Project WHERE id = ?)", *search.projectId);
    if (search.status)
        restrictTo("status = ?", *search.status);
    if (search.priority)
        restrictTo("priority = ?", *search.priority);
    if (search.completed)
        restrict(*search.completed ? "completedAt IS NOT NULL" : "completedAt IS NULL");
    if (search.tagId)
        restrictTo("key IN (SELECT task FROM ProjectTask_Tag WHERE tag IN (SELECT key FROM Tag WHERE id = ?))",
                   *search.tagId);
    return query;
}

} // namespace

std::vector<ProjectTask*> findTasks(ModelContext& context, const TaskSearch& search, const Text& text) {
    auto tasks = context.fetch<ProjectTask>(queryFor(search));
    if (search.title) {
        const Text::Needle needle = text.needle(*search.title);
        std::erase_if(tasks, [&](const ProjectTask* task) { return !needle.isIn(task->title()); });
    }
    sortByDueDate(tasks);
    return tasks;
}

} // namespace quillorn
