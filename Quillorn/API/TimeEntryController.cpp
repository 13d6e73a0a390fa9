#include "API/TimeEntryController.h"

#include "API/TimeEntryRequests.h"
#include "Models/Project.h"
#include "Models/ProjectTask.h"
#include "Models/TimeEntrySearch.h"

namespace quillorn {

HttpResponse TimeEntryController::list(const HttpRequest& request) const {
    const TimeEntrySearch search{
        .includeArchived = queryBool(request, "archived").value_or(false),
        .taskId = queryUUID(request, "taskId"),
        .projectId = queryUUID(request, "projectId"),
        .running = queryBool(request, "running"),
    };
    return listOf([&](ModelContext& context) { return findTimeEntries(context, search); });
}

HttpResponse TimeEntryController::create(const HttpRequest& request) const {
    return createFrom<CreateTimeEntryRequest>(
        request, [](ModelContext& context, const CreateTimeEntryRequest& body, Date now) -> TimeEntry& {
            auto* task = findLinked<ProjectTask>(context, body.taskId);
            auto* project = findLinked<Project>(context, body.projectId);
            auto& entry = context.insert<TimeEntry>(TimeEntry::Arguments{
                .task = task, .project = project, .startTime = body.startTime.value_or(now), .notes = body.notes});
            entry.setEndTime(body.endTime);
            return entry;
        });
}

HttpResponse TimeEntryController::update(const HttpRequest& request) const {
    return updateFrom<UpdateTimeEntryRequest>(
        request, [](ModelContext& context, TimeEntry& entry, const UpdateTimeEntryRequest& body, Date) {
            if (body.startTime)
                entry.setStartTime(*body.startTime);
            if (body.endTime)
                entry.setEndTime(body.endTime);
            if (body.notes)
                entry.setNotes(body.notes);
            if (body.taskId)
                entry.setTask(findLinked<ProjectTask>(context, body.taskId));
            if (body.projectId)
                entry.setProject(findLinked<Project>(context, body.projectId));
        });
}

HttpResponse TimeEntryController::stop(const HttpRequest& request) const {
    return act(request, [](TimeEntry& entry, Date now) {
        if (!entry.isRunning())
            throw APIError::badRequest("Time entry is not running");
        entry.setEndTime(now);
    });
}

} // namespace quillorn
