#include "API/TaskController.h"

#include "API/JsonResponse.h"
#include "API/Lookup.h"
#include "API/RequestHelpers.h"
#include "API/TaskDTO.h"
#include "API/TaskRequests.h"
#include "API/TimeEntryDTO.h"
#include "Models/Project.h"
#include "Models/ProjectTask.h"
#include "Models/Tag.h"
#include "Models/TaskSearch.h"
#include "Models/TimeEntry.h"
#include "Platform/Clock.h"

#include <algorithm>
#include <utility>

namespace quillorn {

namespace {

using Intent = ModelContext::Intent;

ProjectTask& findTask(ModelContext& context, const UUID& id) {
    return findOrThrow<ProjectTask>(context, id, "Task");
}

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
    return answer([&] {
        const TaskSearch search{
            .includeArchived = queryBool(request, "archived").value_or(false),
            .title = queryValue(request, "title"),
            .projectId = queryUUID(request, "projectId"),
            .status = queryInt(request, "status"),
            .priority = queryInt(request, "priority"),
            .completed = queryBool(request, "completed"),
            .tagId = queryUUID(request, "tagId"),
        };
        auto context = std::make_unique<ModelContext>(m_container);
        TaskRows rows(*context, findTasks(*context, search, m_text), m_clock.now());
        return listResponse<TaskDTO>(std::move(context), std::move(rows));
    });
}

HttpResponse TaskController::get(const HttpRequest& request) const {
    return answer([&] {
        const UUID id = pathUUID(request, "id");
        ModelContext context(m_container);
        return jsonResponse(taskRecord(findTask(context, id), m_clock.now()));
    });
}

HttpResponse TaskController::create(const HttpRequest& request) const {
    return answer([&] {
        const auto body = decodeValidBody<CreateTaskRequest>(request);
        const Date now = m_clock.now();
        const auto status = enumOr(body.status, TaskStatus::todo);
        ModelContext context(m_container, Intent::update);
        auto* project = findLinked<Project>(context, body.projectId, "Project");
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
        context.save();
        return jsonResponse(taskRecord(task, now), 201);
    });
}

HttpResponse TaskController::update(const HttpRequest& request) const {
    return answer([&] {
        const UUID id = pathUUID(request, "id");
        const auto body = decodeValidBody<UpdateTaskRequest>(request);
        return change(id, [&](ModelContext& context, ProjectTask& task, Date now) {
            // First of all, since a completed task is announced at once and a missing project must stop even that.
            auto* project = findLinked<Project>(context, body.projectId, "Project");
            applyFields(task, body, now);
            if (project != nullptr)
                task.setProject(project);
            if (body.tagIds)
                task.setTags(findTags(context, *body.tagIds));
            task.setUpdatedAt(now);
        });
    });
}

HttpResponse TaskController::remove(const HttpRequest& request) const {
    return answer([&] {
        const UUID id = pathUUID(request, "id");
        ModelContext context(m_container, Intent::update);
        context.remove(findTask(context, id));
        context.save();
        return noContentResponse();
    });
}

HttpResponse TaskController::complete(const HttpRequest& request) const {
    return answer([&] {
        return change(pathUUID(request, "id"),
                      [](ModelContext&, ProjectTask& task, Date now) { task.setCompleted(true, now); });
    });
}

HttpResponse TaskController::incomplete(const HttpRequest& request) const {
    return answer([&] {
        return change(pathUUID(request, "id"),
                      [](ModelContext&, ProjectTask& task, Date now) { task.setCompleted(false, now); });
    });
}

HttpResponse TaskController::timeEntries(const HttpRequest& request) const {
    return answer([&] {
        const UUID id = pathUUID(request, "id");
        auto context = std::make_unique<ModelContext>(m_container);
        const auto& list = findTask(*context, id).timeEntries();
        std::vector<TimeEntry*> entries(list.begin(), list.end());
        std::ranges::sort(entries, [](const TimeEntry* a, const TimeEntry* b) {
            return std::pair(b->startTime(), a->key()) < std::pair(a->startTime(), b->key());
        });
        return listResponse<TimeEntryDTO>(std::move(context), TimeEntryRows(std::move(entries), m_clock.now()));
    });
}

HttpResponse TaskController::addTags(const HttpRequest& request) const {
    return answer([&] {
        const UUID id = pathUUID(request, "id");
        const auto body = decodeBody<TaskTagsRequest>(request);
        return change(id, [&](ModelContext& context, ProjectTask& task, Date now) {
            std::vector<Tag*> tags(task.tags().begin(), task.tags().end());
            const auto added = findTags(context, body.tagIds);
            tags.insert(tags.end(), added.begin(), added.end());
            task.setTags(tags);
            task.setUpdatedAt(now);
        });
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

HttpResponse TaskController::change(const UUID& id, const Change& apply) const {
    const Date now = m_clock.now();
    ModelContext context(m_container, Intent::update);
    ProjectTask& task = findTask(context, id);
    apply(context, task, now);
    context.save();
    return jsonResponse(taskRecord(task, now));
}

} // namespace quillorn
