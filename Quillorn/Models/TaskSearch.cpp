#include "Models/TaskSearch.h"

#include "Models/SearchConditions.h"
#include "Models/Sorting.h"

namespace quillorn {

namespace {

Query queryFor(const TaskSearch& search) {
    SearchConditions conditions;
    if (!search.includeArchived)
        conditions.addProjectNotHidden();
    if (search.projectId)
        conditions.addProject(*search.projectId);
    if (search.status)
        conditions.add("status = ?", *search.status);
    if (search.priority)
        conditions.add("priority = ?", *search.priority);
    if (search.completed)
        conditions.add(*search.completed ? "completedAt IS NOT NULL" : "completedAt IS NULL");
    if (search.tagId)
        conditions.add("key IN (SELECT task FROM ProjectTask_Tag WHERE tag IN (SELECT key FROM Tag WHERE id = ?))",
                       *search.tagId);
    return std::move(conditions).query();
}

} // namespace

std::vector<ProjectTask*> findTasks(ModelContext& context, const TaskSearch& search, const Text& text) {
    auto tasks = context.fetch<ProjectTask>(queryFor(search));
    keepContaining(tasks, text, search.title, &ProjectTask::title);
    sortByKey(tasks, [](const ProjectTask& task) { return task.dueDate().value_or(Date::min()); });
    return tasks;
}

} // namespace quillorn
