#include "API/ProjectController.h"

#include "API/NoteDTO.h"
#include "API/ProjectRequests.h"
#include "API/TaskDTO.h"
#include "API/TimeEntryDTO.h"
#include "Models/Note.h"
#include "Models/ProjectOrder.h"
#include "Models/ProjectSearch.h"
#include "Models/ProjectTask.h"
#include "Models/Sorting.h"
#include "Models/TimeEntry.h"

namespace quillorn {

namespace {

/// Puts the project at the end of the client's projects, outside all groups.
void moveToClient(Project& project, Client& client, ModelContext& context) {
    // Before it belongs to them: its own place must not count.
    project.setSortOrder(nextProjectOrder(&client, context));
    project.setGroupID(std::nullopt);
    project.setClient(&client);
}

} // namespace

HttpResponse ProjectController::list(const HttpRequest& request) const {
    const ProjectSearch search{
        .includeArchived = queryBool(request, "archived").value_or(false),
        .name = queryValue(request, "name"),
        .clientId = queryUUID(request, "clientId"),
    };
    return listOf([&](ModelContext& context) { return findProjects(context, search, text()); });
}

HttpResponse ProjectController::create(const HttpRequest& request) const {
    return createFrom<CreateProjectRequest>(
        request, [](ModelContext& context, const CreateProjectRequest& body, Date now) -> Project& {
            auto* client = findLinked<Client>(context, body.clientId);
            const std::int64_t order = nextProjectOrder(client, context);
            auto& project = context.insert<Project>(Project::Arguments{.name = body.name,
                                                                       .projectDescription = body.description,
                                                                       .color = body.color.value_or(defaultColor)},
                                                    now);
            project.setSortOrder(order);
            project.setClient(client);
            return project;
        });
}

HttpResponse ProjectController::update(const HttpRequest& request) const {
    return updateFrom<UpdateProjectRequest>(
        request, [](ModelContext& context, Project& project, const UpdateProjectRequest& body, Date now) {
            if (body.name)
                project.setName(*body.name);
            if (body.description)
                project.setProjectDescription(body.description);
            if (body.color)
                project.setColor(*body.color);
            if (body.isArchived)
                project.setArchived(*body.isArchived);
            if (body.clientId && idOf(project.client()) != body.clientId)
                moveToClient(project, findOrThrow<Client>(context, *body.clientId), context);
            project.setUpdatedAt(now);
        });
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
