#include "MCP/ResourceDocuments.h"

#include "MCP/ResourceRecords.h"
#include "Models/Client.h"
#include "Models/ClientSearch.h"
#include "Models/Formatters.h"
#include "Models/NoteSearch.h"
#include "Models/Project.h"
#include "Models/ProjectSearch.h"
#include "Models/ProjectTask.h"
#include "Models/Sorting.h"
#include "Models/TimeEntryLinks.h"
#include "Models/TimeEntrySearch.h"
#include "Models/TimeSpent.h"
#include "Platform/Calendar.h"
#include "Records/Rows.h"

#include <algorithm>
#include <utility>

namespace quillorn {

namespace {

template <class Rows>
Items<typename Rows::Record> itemsOf(const DocumentContext& work, std::vector<typename Rows::Object*> objects) {
    const Rows rows(work.context, std::move(objects), work.now);
    Items<typename Rows::Record> items(rows.size());
    for (std::size_t i = 0; i < items.size(); ++i)
        rows.fill(i, items[i].record);
    return items;
}

std::vector<TimeEntryItem> timeEntryItems(const DocumentContext& work, const std::vector<TimeEntry*>& entries) {
    const TimeEntryLinks links(work.context, entries);
    std::vector<TimeEntryItem> items;
    items.reserve(entries.size());
    for (const TimeEntry* entry : entries) {
        TimeEntryItem& item = items.emplace_back();
        item.id = entry->id();
        item.startTime = entry->startTime();
        item.endTime = entry->endTime();
        item.duration = entry->duration(work.now);
        item.durationFormatted = hoursAndMinutes(item.duration);
        if (const auto* task = links.taskOf(*entry)) {
            item.taskId = task->id;
            item.taskTitle = task->name;
        }
        if (const auto* project = links.projectOf(*entry)) {
            item.projectId = project->id;
            item.projectName = project->name;
        }
        item.notes = entry->notes();
    }
    return items;
}

template <class Document>
std::string text(const Document& document) {
    return jsonText([&](JsonWriter& writer) { write(writer, document); });
}

template <class List>
std::int64_t countOf(const List& list) {
    return static_cast<std::int64_t>(list.size());
}

Date startOfToday(const DocumentContext& work) {
    return work.calendar.startOfDay(work.now);
}

/// Of an open task: its day is over. Unlike ProjectTask::isOverdue this leaves out what was due earlier today.
bool isPastItsDay(const ProjectTask& task, Date startOfToday) {
    return !task.isCompleted() && task.dueDate() && *task.dueDate() < startOfToday;
}

/// Open tasks that are due before then, the longest due first.
std::vector<ProjectTask*> openTasksDueBefore(const DocumentContext& work, Date end) {
    return work.context.fetch<ProjectTask>({.where = "completedAt IS NULL AND dueDate < ?",
                                            .values = {std::int64_t{end.time_since_epoch().count()}},
                                            .order = "dueDate, key"});
}

std::vector<TimeEntryItem> runningTimers(const DocumentContext& work) {
    return timeEntryItems(work, findTimeEntries(work.context, {.includeArchived = true, .running = true}));
}

} // namespace

std::string overviewDocument(const DocumentContext& work) {
    const auto clients = findClients(work.context, {.includeArchived = true}, work.text);
    const auto projects = findProjects(work.context, {.includeArchived = true}, work.text);
    const auto activeCount = [](const auto& objects) {
        return std::ranges::count_if(objects, [](const auto* object) { return !object->isArchived(); });
    };
    OverviewDocument document;
    OverviewStats& stats = document.stats;
    stats.totalClients = countOf(clients);
    stats.activeClients = activeCount(clients);
    stats.totalProjects = countOf(projects);
    stats.activeProjects = activeCount(projects);
    {
        const StatementLoan tasks = work.context.statement("SELECT count(*), count(completedAt) FROM ProjectTask");
        tasks->step();
        stats.totalTasks = tasks->integer(0);
        stats.completedTasks = tasks->integer(1);
        stats.activeTasks = stats.totalTasks - stats.completedTasks;
    }
    TimeSum time;
    const StatementLoan entries = work.context.statement("SELECT startTime, endTime FROM TimeEntry");
    while (entries->step())
        time.add(*entries, 0, work.now);
    stats.totalTimeTrackedSeconds = time.seconds();
    stats.totalTimeTrackedFormatted = hoursAndMinutes(stats.totalTimeTrackedSeconds);
    document.clients = itemsOf<ClientRows>(work, clients);
    document.projects = itemsOf<ProjectRows>(work, projects);
    return text(document);
}

std::string todayDocument(const DocumentContext& work) {
    const Date today = startOfToday(work);
    auto overdue = openTasksDueBefore(work, work.calendar.addDays(today, 1));
    const auto firstOfToday =
        std::ranges::partition_point(overdue, [&](const ProjectTask* task) { return isPastItsDay(*task, today); });
    const std::vector<ProjectTask*> dueToday(firstOfToday, overdue.end());
    overdue.erase(firstOfToday, overdue.end());

    TodayDocument document{.date = work.now,
                           .tasksDueToday = itemsOf<TaskRows>(work, dueToday),
                           .overdueTasks = itemsOf<TaskRows>(work, overdue),
                           .runningTimers = runningTimers(work),
                           .summary = {}};
    document.summary = {countOf(dueToday), countOf(overdue), countOf(document.runningTimers)};
    return text(document);
}

std::string overdueDocument(const DocumentContext& work) {
    const auto tasks = openTasksDueBefore(work, startOfToday(work));
    return text(OverdueDocument{itemsOf<TaskRows>(work, tasks), countOf(tasks)});
}

std::string runningTimersDocument(const DocumentContext& work) {
    auto timers = runningTimers(work);
    const auto count = countOf(timers);
    return text(RunningTimersDocument{std::move(timers), count});
}

std::string pinnedNotesDocument(const DocumentContext& work) {
    const auto notes = findNotes(work.context, {.includeArchived = true, .pinned = true}, work.text);
    return text(PinnedNotesDocument{itemsOf<NoteRows>(work, notes), countOf(notes)});
}

std::string projectDocument(const DocumentContext& work, Project& project) {
    const std::vector<ProjectTask*> tasks(project.tasks().begin(), project.tasks().end());
    const std::vector<Note*> notes(project.notes().begin(), project.notes().end());
    auto entries = project.allTimeEntries();
    sortLatestFirst(entries, &TimeEntry::startTime);
    const Date today = startOfToday(work);

    ProjectDocument document;
    document.project = itemsOf<ProjectRows>(work, {&project}).front();
    if (const Client* client = project.client())
        document.client = ClientName{client->id(), client->name()};
    document.tasks = itemsOf<TaskRows>(work, tasks);
    document.notes = itemsOf<NoteRows>(work, notes);
    document.timeEntries = timeEntryItems(work, entries);
    ProjectStats& stats = document.stats;
    stats.totalTasks = countOf(tasks);
    stats.completedTasks = std::ranges::count_if(tasks, &ProjectTask::isCompleted);
    stats.activeTasks = stats.totalTasks - stats.completedTasks;
    stats.overdueTasks =
        std::ranges::count_if(tasks, [&](const ProjectTask* task) { return isPastItsDay(*task, today); });
    stats.noteCount = countOf(notes);
    stats.totalTimeSeconds = document.project.record.totalTimeSpent;
    stats.totalTimeFormatted = hoursAndMinutes(stats.totalTimeSeconds);
    return text(document);
}

} // namespace quillorn
