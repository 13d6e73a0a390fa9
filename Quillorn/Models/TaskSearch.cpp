#include "Models/TaskSearch.h"

#include "Platform/Text.h"
#include "Store/ModelContext.h"

namespace quillorn {

namespace {

constexpr const char* notArchived =
    "(project IS NULL OR project IN (SELECT p.key FROM Project p LEFT JOIN Client c ON c.key = p.client "
    "WHERE NOT p.isArchived AND NOT coalesce(c.isArchived, 0)))";

Query queryFor(const TaskSearch& search) {
    Query query{.order = "dueDate, key"};
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
    return tasks;
}

} // namespace quillorn
