#include "API/ProjectController.h"

#include "Models/Note.h"
#include "Models/ProjectSearch.h"
#include "Models/ProjectTask.h"
#include "Models/Sorting.h"
#include "Models/TimeEntry.h"
#include "Records/Edits.h"
#include "Records/NoteDTO.h"
#include "Records/ProjectRequests.h"
#include "Records/TaskDTO.h"
#include "Records/TimeEntryDTO.h"

namespace quillorn {

HttpResponse ProjectController::list(const HttpRequest& request) const {
    const ProjectSearch search{
        .includeArchived = queryBool(request, "archived").value_or(false),
        .name = queryValue(request, "name"),
        .clientId = queryUUID(request, "clientId"),
    };
    return listOf(request, [&](ModelContext& context) { return findProjects(context, search, text()); });
}

HttpResponse ProjectController::create(const HttpRequest& request) const {
    return createFrom<CreateProjectRequest>(request, createProject);
}

HttpResponse ProjectController::update(const HttpRequest& request) const {
    return updateFrom<UpdateProjectRequest>(request, updateProject);
}

HttpResponse ProjectController::tasks(const HttpRequest& request) const {
    const auto completed = queryBool(request, "completed");
    return listInside<TaskRows>(request, [&](const Project& project) {
        std::vector<ProjectTask*> tasks(project.tasks().begin(), project.tasks().end());
        std::erase_if(tasks, [&](const ProjectTask* task) { return completed && task->isCompleted() != *completed; });
        return tasks;
    });
}

HttpResponse ProjectController::notes(const HttpRequest& request) const {
    return listInside<NoteRows>(request, [](const Project& project) {
        return std::vector<Note*>(project.notes().begin(), project.notes().end());
    });
}

HttpResponse ProjectController::timeEntries(const HttpRequest& request) const {
    return listInside<TimeEntryRows>(request, [](const Project& project) {
        auto entries = project.allTimeEntries();
        sortLatestFirst(entries, &TimeEntry::startTime);
        return entries;
    });
}

} // namespace quillorn
