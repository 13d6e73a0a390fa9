#include "AI/ChatTool.h"

#include "Models/Note.h"
#include "Models/Project.h"
#include "Models/ProjectTask.h"
#include "Models/ProjectTotals.h"
#include "Models/Tag.h"
#include "Models/TaskTotals.h"
#include "Models/TimeEntry.h"
#include "Platform/Text.h"

#include <algorithm>

namespace quillorn {

namespace {

constexpr std::size_t tasksOfAList = 30;
constexpr std::size_t entriesOfATask = 10;
constexpr std::size_t previewLength = 200; // characters

Json listProjects(const ChatToolCall& call) {
    const std::vector<Project*> projects = call.projects();
    const ProjectTotalsTable totals(call.context, projects, call.now);
    Json::Array result;
    for (const Project* project : projects) {
        const ProjectTotals sums = totals.of(*project);
        result.emplace_back(Json::Object{{"id", project->id().string()},
                                         {"name", project->name()},
                                         {"description", project->projectDescription().value_or("")},
                                         {"activeTasks", sums.taskCount - sums.completedTaskCount},
                                         {"totalTasks", sums.taskCount},
                                         {"completedTasks", sums.completedTaskCount},
                                         {"totalTimeHours", hoursOf(sums.totalTimeSpent)}});
    }
    return result;
}

/// The conditions that a model may set.
Query wantedTasks(const ChatToolCall& call) {
    Query query = call.tasksInScope();
    if (const auto project = call.arguments.id("projectId"))
        restrict(query, "ProjectTask.project IN (SELECT key FROM Project WHERE id = ?)", {*project});
    const auto status = call.arguments.status();
    if (status)
        restrict(query, "status = ?", {static_cast<std::int64_t>(*status)});
    if (const auto priority = call.arguments.priority())
        restrict(query, "priority = ?", {static_cast<std::int64_t>(*priority)});
    if (!status && call.arguments.boolean("includeCompleted") != true)
        restrict(query, "status <> ?", {static_cast<std::int64_t>(TaskStatus::done)});
    return query;
}

/// The first ones by urgency. Only their titles are looked at before it is known which they are.
std::vector<RowKey> firstTasks(const ChatToolCall& call, std::size_t limit) {
    const Query query = wantedTasks(call);
    const auto search = call.arguments.text("search");
    const auto needle = search ? std::optional(call.text.needle(*search)) : std::nullopt;
    const StatementLoan rows = call.context.statement("SELECT key, title FROM ProjectTask WHERE " + query.where +
                                                      " ORDER BY priority DESC, dueDate IS NULL, dueDate, key");
    rows->bindAll(query.values);
    std::vector<RowKey> keys;
    while (keys.size() < limit && rows->step())
        if (!needle || needle->isIn(rows->text(1)))
            keys.push_back(rows->integer(0));
    return keys;
}

Json listTasks(const ChatToolCall& call) {
    const std::vector<RowKey> keys = firstTasks(call, call.arguments.limit(tasksOfAList));
    return taskObjects(call, objectsOf<ProjectTask>(call.context, keys));
}

Json::Array tagObjects(const ProjectTask& task) {
    Json::Array tags;
    for (const Tag* tag : task.tags())
        tags.emplace_back(Json::Object{{"id", tag->id().string()}, {"name", tag->name()}});
    return tags;
}

Json::Array noteObjects(const ProjectTask& task) {
    Json::Array notes;
    for (const Note* note : task.notes())
        notes.emplace_back(Json::Object{{"id", note->id().string()},
                                        {"title", note->title()},
                                        {"preview", characterPrefix(note->content(), previewLength)}});
    return notes;
}

Json getTaskDetails(const ChatToolCall& call) {
    const auto id = call.arguments.id("taskId");
    if (!id)
        return toolError("taskId is required and must be a valid UUID");
    Query query = call.tasksInScope();
    restrict(query, "id = ?", {*id});
    const auto found = call.context.fetch<ProjectTask>(query);
    if (found.empty())
        return toolError("Task not found");
    const ProjectTask& task = *found.front();
    std::vector<TimeEntry*> entries(task.timeEntries().begin(), task.timeEntries().end());
    entries.resize(std::min(entries.size(), entriesOfATask));
    Json::Object result = *taskObjects(call, {found.front()}).front().asObject();
    result["description"] = task.taskDescription().value_or("");
    result["subtasks"] = taskObjects(call, {task.subtasks().begin(), task.subtasks().end()});
    result["tags"] = tagObjects(task);
    result["notes"] = noteObjects(task);
    result["timeEntries"] = timeEntryObjects(call, entries);
    result["totalTimeHours"] = hoursOf(task.totalTimeSpent(call.now));
    return result;
}

} // namespace

Json::Array taskObjects(const ChatToolCall& call, const std::vector<ProjectTask*>& tasks) {
    const TaskTotalsTable totals(call.context, tasks, call.now);
    Json::Array result;
    for (const ProjectTask* task : tasks) {
        const TaskTotals sums = totals.of(*task);
        Json::Object object{{"id", task->id().string()},
                            {"title", task->title()},
                            {"status", label(task->status())},
                            {"priority", label(task->priority())},
                            {"isCompleted", task->isCompleted()},
                            {"project", task->project() != nullptr ? task->project()->name() : "Unknown"}};
        if (task->dueDate()) {
            object["dueDate"] = call.day(*task->dueDate());
            object["isOverdue"] = task->isOverdue(call.now);
        }
        if (sums.totalTimeSpent > 0)
            object["timeSpentHours"] = hoursOf(sums.totalTimeSpent);
        if (sums.subtaskCount > 0) {
            object["subtaskCount"] = sums.subtaskCount;
            object["completedSubtasks"] = sums.completedSubtaskCount;
        }
        result.emplace_back(std::move(object));
    }
    return result;
}

std::vector<ChatTool> chatTaskTools() {
    return {
        {"list_projects",
         "List active projects with task counts and time totals. Use this to get an overview of all projects.",
         {},
         &listProjects},
        {"list_tasks",
         "List tasks with optional filters. By default only returns incomplete tasks — set includeCompleted=true or "
         "filter by status=\"done\" to see completed tasks. Returns title, status, priority, due date, and time spent "
         "for each task.",
         {{"projectId", "string", "Filter by project ID (UUID). Omit to search across all projects."},
          {"status", "string", "Filter by task status.", {"todo", "inProgress", "review", "done"}},
          {"priority", "string", "Filter by priority level.", {"low", "medium", "high", "urgent"}},
          {"includeCompleted", "boolean",
           "Set to true to include completed/done tasks in results. Defaults to false (only incomplete tasks "
           "returned). Not needed when filtering by status=\"done\"."},
          {"search", "string", "Search in task titles (case-insensitive)."},
          {"limit", "integer", "Maximum number of tasks to return. Defaults to 30."}},
         &listTasks},
        {"get_task_details",
         "Get full details of a specific task including description, subtasks, notes, tags, and time entries.",
         {{.name = "taskId", .description = "The task UUID to look up.", .isRequired = true}},
         &getTaskDetails},
    };
}

} // namespace quillorn
