#include "API/TimeEntryController.h"

#include "Models/TimeEntrySearch.h"
#include "Records/Edits.h"
#include "Records/TimeEntryRequests.h"

namespace quillorn {

HttpResponse TimeEntryController::list(const HttpRequest& request) const {
    const TimeEntrySearch search{
        .includeArchived = queryBool(request, "archived").value_or(false),
        .taskId = queryUUID(request, "taskId"),
        .projectId = queryUUID(request, "projectId"),
        .running = queryBool(request, "running"),
    };
    return listOf(request, [&](ModelContext& context) { return findTimeEntries(context, search); });
}

HttpResponse TimeEntryController::create(const HttpRequest& request) const {
    return createFrom<CreateTimeEntryRequest>(request, createTimeEntry);
}

HttpResponse TimeEntryController::update(const HttpRequest& request) const {
    return updateFrom<UpdateTimeEntryRequest>(request, updateTimeEntry);
}

HttpResponse TimeEntryController::stop(const HttpRequest& request) const {
    return act(request, [](TimeEntry& entry, Date now) {
        if (!entry.isRunning())
            throw APIError::badRequest("Time entry is not running");
        entry.setEndTime(now);
    });
}

} // namespace quillorn
