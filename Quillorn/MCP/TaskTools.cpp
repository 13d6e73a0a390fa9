#include "MCP/ToolLists.h"
#include "Models/Note.h"
#include "Models/TaskActions.h"
#include "Models/TaskSearch.h"
#include "Records/Edits.h"
#include "Records/Lookup.h"
#include "Records/TaskRequests.h"

namespace quillorn {

namespace {

/// Where a task is to stand: under that one or, without it, on its own.
struct NewParent {
    std::optional<UUID> id;
};

struct TaskArguments {
    UUID taskId;
};

struct UpdateTaskArguments : UpdateTaskRequest {
    UUID taskId;
    std::optional<NewParent> newParent;
};

struct AddCommentArguments {
    UUID taskId;
    std::string text;
};

struct CommentArguments {
    UUID commentId;
};

struct ListSubtasksArguments {
    UUID taskId;
    bool includeCompleted = false;
};

struct AddSubtaskArguments : CreateTaskRequest {
    UUID parentId;
};

struct ConvertArguments {
    UUID taskId;
    UUID parentTaskId;
};

constexpr const char* priorityWords = "Priority: 0=low, 1=medium, 2=high, 3=urgent";

ProjectTask& findTask(const ToolCall& call, const UUID& id) {
    return findOrThrow<ProjectTask>(call.context, id);
}

ProjectTask& findParent(const ToolCall& call, const UUID& id) {
    if (auto* parent = call.context.find<ProjectTask>(id))
        return *parent;
    throw ToolError("Parent task not found: " + id.string());
}

void requireFit(const ProjectTask& task, const ProjectTask& parent) {
    switch (faultOfParent(task, parent)) {
    case ParentFault::none:
        return;
    case ParentFault::self:
        throw ToolError("A task cannot be its own parent");
    case ParentFault::circle:
        throw ToolError("Cannot create circular parent-child relationship");
    }
}

ProjectTask& update(const ToolCall& call, const UpdateTaskArguments& arguments) {
    auto& task = findTask(call, arguments.taskId);
    ProjectTask* parent = nullptr;
    if (arguments.newParent && arguments.newParent->id) {
        parent = &findParent(call, *arguments.newParent->id);
        requireFit(task, *parent);
    }
    updateTask(call.context, task, arguments, call.now);
    if (arguments.newParent)
        task.setParentTask(parent);
    return task;
}

Note& comment(const ToolCall& call, const AddCommentArguments& arguments) {
    if (Note* note = addComment(findTask(call, arguments.taskId), arguments.text, call.now))
        return *note;
    throw ToolError("text is required and cannot be empty"); // nothing but line ends
}

void removeComment(const ToolCall& call, const CommentArguments& arguments) {
    Note* note = call.context.find<Note>(arguments.commentId);
    if (note == nullptr || note->task() == nullptr) // a note on a project is no comment
        throw ToolError("Comment not found: " + arguments.commentId.string());
    note->task()->setUpdatedAt(call.now);
    call.context.remove(*note);
}

std::vector<ProjectTask*> subtasksOf(const ProjectTask& task, bool includeCompleted) {
    std::vector<ProjectTask*> subtasks(task.subtasks().begin(), task.subtasks().end());
    if (!includeCompleted)
        std::erase_if(subtasks, [](const ProjectTask* subtask) { return subtask->isCompleted(); });
    return subtasks;
}

ProjectTask& convert(const ToolCall& call, const ConvertArguments& arguments) {
    auto& task = findTask(call, arguments.taskId);
    auto& parent = findParent(call, arguments.parentTaskId);
    requireFit(task, parent);
    task.setParentTask(&parent);
    task.setUpdatedAt(call.now);
    return task;
}

/// What creating and updating share, worded for either.
template <class Arguments>
ToolParameters<Arguments> sharedParameters(RecordUse use) {
    const bool isUpdate = use == RecordUse::update;
    return {
        {"description", &TaskFields::description, isUpdate ? "New description" : "Task description"},
        {"dueDate", &TaskFields::dueDate, isUpdate ? "New due date in ISO8601 format" : "Due date in ISO8601 format"},
        {"priority", &TaskFields::priority, isUpdate ? "New priority" : priorityWords,
         isUpdate ? zeroToThree() : zeroToThree(1)},
        {"status", &TaskFields::status, isUpdate ? "New status" : "Status: 0=todo, 1=inProgress, 2=review, 3=done",
         isUpdate ? zeroToThree() : zeroToThree(0)},
        {"projectId", &TaskFields::projectId, isUpdate ? "New parent project UUID" : "Parent project UUID"},
    };
}

} // namespace

template <>
struct WireForm<NewParent> {
    static constexpr WireShape shape = WireForm<UUID>::shape;
    static bool read(const Json& json, NewParent& parent) {
        const std::string* text = json.asString();
        return text != nullptr && (text->empty() || WireForm<UUID>::read(json, parent.id.emplace()));
    }
};

std::vector<Tool> taskTools() {
    using Create = CreateTaskRequest;
    using Update = UpdateTaskArguments;
    using Subtask = AddSubtaskArguments;
    return {
        readingTool<TaskSearch>(
            "list_tasks",
            "List tasks with comprehensive filtering. Filter by project, status, priority, completion, tag, or search "
            "by title. By default excludes tasks under archived projects or clients.",
            {{"projectId", &TaskSearch::projectId, "Filter by project UUID"},
             {"title", &TaskSearch::title, "Search in title (case-insensitive)"},
             {"status", &TaskSearch::status, "Filter by status: 0=todo, 1=inProgress, 2=review, 3=done", zeroToThree()},
             {"priority", &TaskSearch::priority, "Filter by priority: 0=low, 1=medium, 2=high, 3=urgent",
              zeroToThree()},
             {"completed", &TaskSearch::completed, "Filter by completion status"},
             {"tagId", &TaskSearch::tagId, "Filter by tag UUID"},
             {"includeArchived", &TaskSearch::includeArchived, "Include tasks under archived projects or clients"}},
            [](const ToolCall& call, const TaskSearch& search) { return findTasks(call.context, search, call.text); }),
        readingTool<TaskArguments>("get_task", "Get a specific task with all details including time spent.",
                                   {{"taskId", &TaskArguments::taskId, "Task UUID"}},
                                   [](const ToolCall& call, const TaskArguments& arguments) -> ProjectTask& {
                                       return findTask(call, arguments.taskId);
                                   }),
        changingTool<Create>("create_task",
                             "Create a new task. Optionally assign to a project or parent task (subtask).",
                             ToolParameters<Create>{
                                 {"title", &Create::title, "Task title (required)"},
                                 {"parentTaskId", &Create::parentTaskId, "Parent task UUID (makes this a subtask)"},
                             } + sharedParameters<Create>(RecordUse::whole),
                             [](const ToolCall& call, const Create& arguments) -> ProjectTask& {
                                 const auto& parentId = arguments.parentTaskId;
                                 return createTaskUnder(call.context, parentId ? &findParent(call, *parentId) : nullptr,
                                                        arguments, call.now);
                             }),
        changingTool<Update>(
            "update_task", "Update a task's title, description, due date, priority, status, project, or parent task.",
            ToolParameters<Update>{
                {"taskId", &Update::taskId, "Task UUID (required)"},
                {"title", &Update::title, "New title"},
                {"parentTaskId", &Update::newParent, "New parent task UUID (set to empty string to make standalone)"},
            } + sharedParameters<Update>(RecordUse::update),
            update),
        changingTool<TaskArguments>("complete_task", "Mark a task as complete. Sets completedAt and status to done.",
                                    {{"taskId", &TaskArguments::taskId, "Task UUID"}},
                                    [](const ToolCall& call, const TaskArguments& arguments) -> ProjectTask& {
                                        auto& task = findTask(call, arguments.taskId);
                                        task.setCompleted(true, call.now);
                                        return task;
                                    }),
        changingTool<TaskArguments>("incomplete_task", "Mark a completed task as incomplete. Clears completedAt.",
                                    {{"taskId", &TaskArguments::taskId, "Task UUID"}},
                                    [](const ToolCall& call, const TaskArguments& arguments) -> ProjectTask& {
                                        auto& task = findTask(call, arguments.taskId);
                                        task.setCompleted(false, call.now);
                                        return task;
                                    }),
        changingTool<TaskArguments>("delete_task", "Delete a task permanently.",
                                    {{"taskId", &TaskArguments::taskId, "Task UUID"}},
                                    [](const ToolCall& call, const TaskArguments& arguments) {
                                        call.context.remove(findTask(call, arguments.taskId));
                                    }),
        readingTool<TaskArguments>("list_task_comments", "List all comments on a task, newest first.",
                                   {{"taskId", &TaskArguments::taskId, "Task UUID"}},
                                   [](const ToolCall& call, const TaskArguments& arguments) {
                                       return commentsOf(findTask(call, arguments.taskId));
                                   }),
        changingTool<AddCommentArguments>("add_task_comment", "Add a comment to a task.",
                                          {{"taskId", &AddCommentArguments::taskId, "Task UUID"},
                                           {"text", &AddCommentArguments::text, "Comment text (required)"}},
                                          comment),
        changingTool<CommentArguments>("delete_task_comment", "Delete a comment from a task.",
                                       {{"commentId", &CommentArguments::commentId, "Comment (note) UUID"}},
                                       removeComment),
        readingTool<ListSubtasksArguments>(
            "list_subtasks", "List all subtasks of a task. Returns immediate children only (not recursive).",
            {{"taskId", &ListSubtasksArguments::taskId, "Parent task UUID"},
             {"includeCompleted", &ListSubtasksArguments::includeCompleted, "Include completed subtasks"}},
            [](const ToolCall& call, const ListSubtasksArguments& arguments) {
                return subtasksOf(findTask(call, arguments.taskId), arguments.includeCompleted);
            }),
        changingTool<Subtask>(
            "add_subtask", "Quick way to add a subtask to an existing task. Inherits parent's project.",
            {{"parentTaskId", &Subtask::parentId, "Parent task UUID (required)"},
             {"title", &Subtask::title, "Subtask title (required)"},
             {"description", &Subtask::description, "Subtask description"},
             {"dueDate", &Subtask::dueDate, "Due date in ISO8601 format"},
             {"priority", &Subtask::priority, priorityWords, zeroToThree(1)}},
            [](const ToolCall& call, const Subtask& arguments) -> ProjectTask& {
                return createTaskUnder(call.context, &findParent(call, arguments.parentId), arguments, call.now);
            }),
        changingTool<ConvertArguments>(
            "convert_to_subtask", "Convert an existing task into a subtask of another task.",
            {{"taskId", &ConvertArguments::taskId, "Task to convert (required)"},
             {"parentTaskId", &ConvertArguments::parentTaskId, "New parent task UUID (required)"}},
            convert),
    };
}

} // namespace quillorn
