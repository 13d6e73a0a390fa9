#include "Records/Edits.h"

#include "Models/Client.h"
#include "Models/Note.h"
#include "Models/Project.h"
#include "Models/ProjectOrder.h"
#include "Models/ProjectTask.h"
#include "Models/Tag.h"
#include "Models/TimeEntry.h"
#include "Records/ClientRequests.h"
#include "Records/Lookup.h"
#include "Records/NoteRequests.h"
#include "Records/ProjectRequests.h"
#include "Records/Rows.h"
#include "Records/TagRequests.h"
#include "Records/TaskRequests.h"
#include "Records/TimeEntryRequests.h"

#include <utility>

namespace quillorn {

namespace {

template <class Enum>
Enum enumOr(const std::optional<std::int64_t>& raw, Enum otherwise) {
    return raw ? enumFromRaw<Enum>(*raw).value_or(otherwise) : otherwise;
}

std::optional<std::string> absentIfEmpty(const std::optional<std::string>& text) {
    return text && !text->empty() ? text : std::nullopt;
}

void apply(const ClientFields& fields, Client& client) {
    if (fields.description)
        client.setClientDescription(fields.description);
    if (fields.color)
        client.setColor(*fields.color);
    if (fields.icon)
        client.setIcon(*fields.icon);
}

/// Everything but the client.
void apply(const ProjectFields& fields, Project& project) {
    if (fields.description)
        project.setProjectDescription(fields.description);
    if (fields.color)
        project.setColor(*fields.color);
}

/// Everything but the state of work and the links.
void apply(const TaskFields& fields, ProjectTask& task) {
    if (fields.description)
        task.setTaskDescription(fields.description);
    if (fields.dueDate)
        task.setDueDate(fields.dueDate);
    task.setPriority(enumOr(fields.priority, task.priority()));
    if (fields.sourceTitle)
        task.setSourceTitle(absentIfEmpty(fields.sourceTitle));
    if (fields.sourceURL)
        task.setSourceURL(absentIfEmpty(fields.sourceURL));
}

void apply(const TagFields& fields, Tag& tag) {
    if (fields.color)
        tag.setColor(*fields.color);
}

/// Everything but the project.
void apply(const NoteFields& fields, Note& note) {
    if (fields.title)
        note.setTitle(*fields.title);
    if (fields.content)
        note.setContent(*fields.content);
}

} // namespace

Client& createClient(ModelContext& context, const CreateClientRequest& request, Date now) {
    auto& client = context.insert<Client>(Client::Arguments{.name = request.name}, now);
    apply(request, client);
    return client;
}

void updateClient(ModelContext&, Client& client, const UpdateClientRequest& request, Date now) {
    if (request.name)
        client.setName(*request.name);
    apply(request, client);
    if (request.isArchived)
        client.setArchived(*request.isArchived);
    client.setUpdatedAt(now);
}

Project& createProject(ModelContext& context, const CreateProjectRequest& request, Date now) {
    auto* client = findLinked<Client>(context, request.clientId);
    const std::int64_t order = nextProjectOrder(client, context);
    auto& project = context.insert<Project>(Project::Arguments{.name = request.name}, now);
    apply(request, project);
    project.setSortOrder(order);
    project.setClient(client);
    return project;
}

void updateProject(ModelContext& context, Project& project, const UpdateProjectRequest& request, Date now) {
    auto* client = findLinked<Client>(context, request.clientId);
    if (request.name)
        project.setName(*request.name);
    apply(request, project);
    if (request.isArchived)
        project.setArchived(*request.isArchived);
    if (client != nullptr && client != project.client())
        moveProjectToClient(context, project, client);
    project.setUpdatedAt(now);
}

void moveProjectToClient(ModelContext& context, Project& project, Client* client) {
    // Before it belongs to them: its own place must not count.
    project.setSortOrder(nextProjectOrder(client, context));
    project.setGroupID(std::nullopt);
    project.setClient(client);
}

ProjectTask& createTask(ModelContext& context, const CreateTaskRequest& request, Date now) {
    const auto status = enumOr(request.status, TaskStatus::todo);
    auto* project = findLinked<Project>(context, request.projectId);
    const auto tags = findTags(context, request.tagIds.value_or(std::vector<UUID>{}));
    auto& task = context.insert<ProjectTask>(
        ProjectTask::Arguments{.title = request.title, .status = status, .project = project}, now);
    apply(request, task);
    if (!tags.empty())
        task.setTags(tags);
    task.setStatus(status, now);
    return task;
}

ProjectTask& createTaskUnder(ModelContext& context, ProjectTask* parent, const CreateTaskRequest& request, Date now) {
    auto& task = createTask(context, request, now);
    if (parent != nullptr) {
        task.setParentTask(parent);
        if (!request.projectId)
            task.setProject(parent->project());
    }
    return task;
}

void updateTask(ModelContext& context, ProjectTask& task, const UpdateTaskRequest& request, Date now) {
    // First of all, since a completed task is announced at once and a missing project must stop even that.
    auto* project = findLinked<Project>(context, request.projectId);
    if (request.title)
        task.setTitle(*request.title);
    apply(request, task);
    if (request.status)
        task.setStatus(enumOr(request.status, task.status()), now);
    if (request.sortOrder)
        task.setSortOrder(*request.sortOrder);
    if (project != nullptr)
        task.setProject(project);
    if (request.tagIds)
        task.setTags(findTags(context, *request.tagIds));
    task.setUpdatedAt(now);
}

Tag& createTag(ModelContext& context, const CreateTagRequest& request, Date now) {
    auto& tag = context.insert<Tag>(Tag::Arguments{.name = request.name}, now);
    apply(request, tag);
    return tag;
}

void updateTag(ModelContext&, Tag& tag, const UpdateTagRequest& request, Date now) {
    if (request.name)
        tag.setName(*request.name);
    apply(request, tag);
    tag.setUpdatedAt(now);
}

TimeEntry& createTimeEntry(ModelContext& context, const TimeEntryRequest& request, Date now) {
    auto* task = findLinked<ProjectTask>(context, request.taskId);
    auto* project = findLinked<Project>(context, request.projectId);
    auto& entry = context.insert<TimeEntry>(TimeEntry::Arguments{
        .task = task, .project = project, .startTime = request.startTime.value_or(now), .notes = request.notes});
    entry.setEndTime(request.endTime);
    return entry;
}

void updateTimeEntry(ModelContext& context, TimeEntry& entry, const TimeEntryRequest& request, Date) {
    auto* task = findLinked<ProjectTask>(context, request.taskId);
    auto* project = findLinked<Project>(context, request.projectId);
    if (request.startTime)
        entry.setStartTime(*request.startTime);
    if (request.endTime)
        entry.setEndTime(request.endTime);
    if (request.notes)
        entry.setNotes(request.notes);
    if (task != nullptr)
        entry.setTask(task);
    if (project != nullptr)
        entry.setProject(project);
}

Note& createNote(ModelContext& context, const CreateNoteRequest& request, Date now) {
    auto* project = findLinked<Project>(context, request.projectId);
    auto& note = context.insert<Note>(Note::Arguments{.title = "", .project = project}, now);
    apply(request, note);
    return note;
}

void updateNote(ModelContext& context, Note& note, const UpdateNoteRequest& request, Date now) {
    auto* project = findLinked<Project>(context, request.projectId);
    apply(request, note);
    if (request.isPinned)
        note.setPinned(*request.isPinned);
    if (project != nullptr)
        note.setProject(project);
    note.setUpdatedAt(now);
}

} // namespace quillorn
