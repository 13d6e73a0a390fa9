#include "API/TaskController.h"

#include "Models/Sorting.h"
#include "Models/TaskActions.h"
#include "Models/TaskSearch.h"
#include "Models/TimeEntry.h"
#include "Records/Edits.h"
#include "Records/TaskRequests.h"
#include "Records/TimeEntryDTO.h"

namespace quillorn {

HttpResponse TaskController::list(const HttpRequest& request) const {
    const TaskSearch search{
        .includeArchived = queryBool(request, "archived").value_or(false),
        .title = queryValue(request, "title"),
        .projectId = queryUUID(request, "projectId"),
        .status = queryInt(request, "status"),
        .priority = queryInt(request, "priority"),
        .completed = queryBool(request, "completed"),
        .tagId = queryUUID(request, "tagId"),
    };
    return listOf(request, [&](ModelContext& context) { return findTasks(context, search, text()); });
}

HttpResponse TaskController::create(const HttpRequest& request) const {
    return createFrom<CreateTaskRequest>(request, createTask);
}

HttpResponse TaskController::update(const HttpRequest& request) const {
    return updateFrom<UpdateTaskRequest>(request, updateTask);
}

HttpResponse TaskController::complete(const HttpRequest& request) const {
    return act(request, [](ProjectTask& task, Date now) { task.setCompleted(true, now); });
}

HttpResponse TaskController::incomplete(const HttpRequest& request) const {
    return act(request, [](ProjectTask& task, Date now) { task.setCompleted(false, now); });
}

HttpResponse TaskController::timeEntries(const HttpRequest& request) const {
    return listInside<TimeEntryRows>(request, [](const ProjectTask& task) {
        std::vector<TimeEntry*> entries(task.timeEntries().begin(), task.timeEntries().end());
        sortLatestFirst(entries, &TimeEntry::startTime);
        return entries;
    });
}

HttpResponse TaskController::addTags(const HttpRequest& request) const {
    return updateFrom<TaskTagsRequest>(request,
                                       [](ModelContext& context, ProjectTask& task, const TaskTagsRequest& body,
                                          Date now) { addTagsToTask(task, findTags(context, body.tagIds), now); });
}

HttpResponse TaskController::removeTag(const HttpRequest& request) const {
    return answer([&] {
        const UUID id = pathUUID(request, "id");
        const UUID tagId = pathUUID(request, "tagId");
        return change(id, [&](ModelContext&, ProjectTask& task, Date now) { removeTagFromTask(task, tagId, now); });
    });
}

} // namespace quillorn
