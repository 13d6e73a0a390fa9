#include "MCP/ToolLists.h"
#include "Models/Project.h"
#include "Models/ProjectTask.h"
#include "Models/TaskActions.h"
#include "Models/TimeEntrySearch.h"
#include "Records/Edits.h"
#include "Records/Lookup.h"
#include "Records/TimeEntryRequests.h"

namespace quillorn {

namespace {

struct TimeEntryArguments {
    UUID timeEntryId;
};

struct UpdateTimeEntryArguments : TimeEntryRequest {
    UUID timeEntryId;
};

struct LogTimeArguments {
    Date startTime;
    Date endTime;
    std::optional<UUID> taskId;
    std::optional<UUID> projectId;
    std::optional<std::string> notes;
};

TimeEntry& findEntry(const ToolCall& call, const UUID& id) {
    return findOrThrow<TimeEntry>(call.context, id);
}

/// Whatever else runs goes on.
TimeEntry& startTimer(const ToolCall& call, const TimeEntryRequest& arguments) {
    auto& entry = createTimeEntry(call.context, arguments, call.now);
    if (ProjectTask* task = entry.task())
        startWork(*task, call.now);
    return entry;
}

/// An entry that was stopped already gets another end.
TimeEntry& stopTimer(const ToolCall& call, const TimeEntryArguments& arguments) {
    auto& entry = findEntry(call, arguments.timeEntryId);
    entry.setEndTime(call.now);
    return entry;
}

/// Ids that name nothing are dropped, since the time was spent all the same.
TimeEntry& logTime(const ToolCall& call, const LogTimeArguments& arguments) {
    auto& context = call.context;
    auto& entry = context.insert<TimeEntry>(TimeEntry::Arguments{
        .task = arguments.taskId ? context.find<ProjectTask>(*arguments.taskId) : nullptr,
        .project = arguments.projectId ? context.find<Project>(*arguments.projectId) : nullptr,
        .startTime = arguments.startTime,
        .notes = arguments.notes,
    });
    entry.setEndTime(arguments.endTime);
    return entry;
}

} // namespace

std::vector<Tool> timeEntryTools() {
    using Search = TimeEntrySearch;
    using Start = TimeEntryRequest;
    using Log = LogTimeArguments;
    using Update = UpdateTimeEntryArguments;
    return {
        readingTool<Search>(
            "list_time_entries",
            "List time entries. Filter by task, project, or running status. By default excludes entries under archived "
            "projects or clients.",
            {{"taskId", &Search::taskId, "Filter by task UUID"},
             {"projectId", &Search::projectId, "Filter by project UUID"},
             {"running", &Search::running, "Filter to only running (true) or stopped (false) entries"},
             {"includeArchived", &Search::includeArchived, "Include entries under archived projects or clients"}},
            [](const ToolCall& call, const Search& search) { return findTimeEntries(call.context, search); }),
        changingTool<Start>("start_timer",
                            "Start a new time entry (timer). Optionally associate with a task or project.",
                            {{"taskId", &Start::taskId, "Task to track time for"},
                             {"projectId", &Start::projectId, "Project to track time for (if no task)"},
                             {"notes", &Start::notes, "Notes for this time entry"}},
                            startTimer),
        changingTool<TimeEntryArguments>("stop_timer", "Stop a running time entry.",
                                         {{"timeEntryId", &TimeEntryArguments::timeEntryId, "Time entry UUID to stop"}},
                                         stopTimer),
        changingTool<Log>("log_time", "Log a completed time entry with specific start and end times.",
                          {{"startTime", &Log::startTime, "Start time in ISO8601 format"},
                           {"endTime", &Log::endTime, "End time in ISO8601 format"},
                           {"taskId", &Log::taskId, "Task UUID"},
                           {"projectId", &Log::projectId, "Project UUID"},
                           {"notes", &Log::notes, "Notes for this time entry"}},
                          logTime),
        changingTool<Update>("update_time_entry", "Update a time entry's notes, start time, or end time.",
                             {{"timeEntryId", &Update::timeEntryId, "Time entry UUID (required)"},
                              {"notes", &Update::notes, "New notes"},
                              {"startTime", &Update::startTime, "New start time in ISO8601 format"},
                              {"endTime", &Update::endTime, "New end time in ISO8601 format"}},
                             [](const ToolCall& call, const Update& arguments) -> TimeEntry& {
                                 auto& entry = findEntry(call, arguments.timeEntryId);
                                 updateTimeEntry(call.context, entry, arguments, call.now);
                                 return entry;
                             }),
        changingTool<TimeEntryArguments>("delete_time_entry", "Delete a time entry permanently.",
                                         {{"timeEntryId", &TimeEntryArguments::timeEntryId, "Time entry UUID"}},
                                         [](const ToolCall& call, const TimeEntryArguments& arguments) {
                                             call.context.remove(findEntry(call, arguments.timeEntryId));
                                         }),
    };
}

} // namespace quillorn
