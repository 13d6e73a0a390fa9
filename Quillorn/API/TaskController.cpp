#include "API/TaskController.h"

#include "API/TaskRequests.h"
#include "API/TimeEntryDTO.h"
#include "Models/Project.h"
#include "Models/Sorting.h"
#include "Models/Tag.h"
#include "Models/TaskSearch.h"
#include "Models/TimeEntry.h"

namespace quillorn {

namespace {

/// Of a validated raw value.
template <class Enum>
Enum enumOr(const std::optional<std::int64_t>& raw, Enum otherwise) {
    return raw ? enumFromRaw<Enum>(*raw).value_or(otherwise) : otherwise;
}

std::optional<std::string> absentIfEmpty(const std::optional<std::string>& text) {
    return text && !text->empty() ? text : std::nullopt;
}

/// Everything but the links.
void applyFields(ProjectTask& task, const UpdateTaskRequest& body, Date now) {
    if (body.title)
        task.setTitle(*body.title);
    if (body.description)
        task.setTaskDescription(body.description);
    if (body.dueDate)
        task.setDueDate(body.dueDate);
    task.setPriority(enumOr(body.priority, task.priority()));
    if (body.status)
        task.setStatus(enumOr(body.status, task.status()), now);
    if (body.sortOrder)
        task.setSortOrder(*body.sortOrder);
    if (body.sourceTitle)
        task.setSourceTitle(absentIfEmpty(body.sourceTitle));
    if (body.sourceURL)
        task.setSourceURL(absentIfEmpty(body.sourceURL));
}

} // namespace

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
    return listOf([&](ModelContext& context) { return findTasks(context, search, text()); });
}

HttpResponse TaskController::create(const HttpRequest& request) const {
    return createFrom<CreateTaskRequest>(
        request, [](ModelContext& context, const CreateTaskRequest& body, Date now) -> ProjectTask& {
            const auto status = enumOr(body.status, TaskStatus::todo);
            auto* project = findLinked<Project>(context, body.projectId);
            const auto tags = findTags(context, body.tagIds.value_or(std::vector<UUID>{}));
            auto& task = context.insert<ProjectTask>(
                ProjectTask::Arguments{
                    .title = body.title,
                    .taskDescription = body.description,
                    .dueDate = body.dueDate,
                    .priority = enumOr(body.priority, TaskPriority::medium),
                    .status = status,
                    .project = project,
                },
                now);
            task.setSourceTitle(absentIfEmpty(body.sourceTitle));
            task.setSourceURL(absentIfEmpty(body.sourceURL));
            if (!tags.empty())
                task.setTags(tags);
            task.setStatus(status, now);
            return task;
        });
}

HttpResponse TaskController::update(const HttpRequest& request) const {
    return updateFrom<UpdateTaskRequest>(
        request, [](ModelContext& context, ProjectTask& task, const UpdateTaskRequest& body, Date now) {
            // First of all, since a completed task is announced at once and a missing project must stop even that.
            auto* project = findLinked<Project>(context, body.projectId);
            applyFields(task, body, now);
            if (project != nullptr)
                task.setProject(project);
            if (body.tagIds)
                task.setTags(findTags(context, *body.tagIds));
            task.setUpdatedAt(now);
        });
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
    return updateFrom<TaskTagsRequest>(
        request, [](ModelContext& context, ProjectTask& task, const TaskTagsRequest& body, Date now) {
            std::vector<Tag*> tags(task.tags().begin(), task.tags().end());
            const auto added = findTags(context, body.tagIds);
            tags.insert(tags.end(), added.begin(), added.end());
            task.setTags(tags);
            task.setUpdatedAt(now);
        });
}

HttpResponse TaskController::removeTag(const HttpRequest& request) const {
    return answer([&] {
        const UUID id = pathUUID(request, "id");
        const UUID tagId = pathUUID(request, "tagId");
        return change(id, [&](ModelContext&, ProjectTask& task, Date now) {
            std::vector<Tag*> tags(task.tags().begin(), task.tags().end());
            std::erase_if(tags, [&](const Tag* tag) { return tag->id() == tagId; });
            task.setTags(tags);
            task.setUpdatedAt(now);
        });
    });
}

} // namespace quillorn
