#pragma once

#include "Platform/Date.h"

namespace quillorn {

class Client;
class ModelContext;
class Note;
class Project;
class ProjectTask;
class Tag;
class TimeEntry;

struct CreateClientRequest;
struct UpdateClientRequest;
struct CreateNoteRequest;
struct UpdateNoteRequest;
struct CreateProjectRequest;
struct UpdateProjectRequest;
struct CreateTagRequest;
struct UpdateTagRequest;
struct CreateTaskRequest;
struct UpdateTaskRequest;
struct TimeEntryRequest;

// What requests to create and to change records do, by whatever surface they come; that surface has checked the fields.
// None of them saves. A link to a record that is not there throws RecordNotFound, before anything was changed.

Client& createClient(ModelContext& context, const CreateClientRequest& request, Date now);
void updateClient(ModelContext& context, Client& client, const UpdateClientRequest& request, Date now);

/// The new project stands at the end of its client's, outside all groups.
Project& createProject(ModelContext& context, const CreateProjectRequest& request, Date now);
void updateProject(ModelContext& context, Project& project, const UpdateProjectRequest& request, Date now);

/// Puts the project at the end of the client's (null for none), outside all groups.
void moveProjectToClient(ModelContext& context, Project& project, Client* client);

/// Ids of no tag are dropped; raw values of no case count as absent.
ProjectTask& createTask(ModelContext& context, const CreateTaskRequest& request, Date now);
/// The same under a parent (null for none); a subtask without a project of its own takes its parent's.
ProjectTask& createTaskUnder(ModelContext& context, ProjectTask* parent, const CreateTaskRequest& request, Date now);
void updateTask(ModelContext& context, ProjectTask& task, const UpdateTaskRequest& request, Date now);

Tag& createTag(ModelContext& context, const CreateTagRequest& request, Date now);
void updateTag(ModelContext& context, Tag& tag, const UpdateTagRequest& request, Date now);

/// Without a start the entry starts now; without an end it runs.
TimeEntry& createTimeEntry(ModelContext& context, const TimeEntryRequest& request, Date now);
void updateTimeEntry(ModelContext& context, TimeEntry& entry, const TimeEntryRequest& request, Date now);

/// Title and content are empty where the request has none.
Note& createNote(ModelContext& context, const CreateNoteRequest& request, Date now);
void updateNote(ModelContext& context, Note& note, const UpdateNoteRequest& request, Date now);

} // namespace quillorn
