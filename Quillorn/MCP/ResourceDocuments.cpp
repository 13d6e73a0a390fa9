#include "MCP/ResourceDocuments.h"

#include "API/ClientDTO.h"
#include "API/NoteDTO.h"
#include "API/ProjectDTO.h"
#include "API/Rows.h"
#include "API/TaskDTO.h"
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

#include <algorithm>
#include <utility>

namespace quillorn {

namespace {

/// Written as null where it is absent.
template <class Value>
struct Nullable : std::optional<Value> {
    using std::optional<Value>::optional;
    using std::optional<Value>::operator=;
};

/// A record of the REST API whose absent fields are written as null.
template <class Record>
struct Item {
    Record record;
};
template <class Record>
using Items = std::vector<Item<Record>>;

struct TimeEntryItem {
    UUID id;
    Date startTime;
    Nullable<Date> endTime;
    double duration = 0;
    std::string durationFormatted;
    Nullable<UUID> taskId;
    Nullable<std::string> taskTitle;
    Nullable<UUID> projectId;
    Nullable<std::string> projectName;
    Nullable<std::string> notes;

    static const RecordType& recordType();
};

struct OverviewStats {
    std::int64_t totalClients = 0;
    std::int64_t activeClients = 0;
    std::int64_t totalProjects = 0;
    std::int64_t activeProjects = 0;
    std::int64_t totalTasks = 0;
    std::int64_t completedTasks = 0;
    std::int64_t activeTasks = 0;
    double totalTimeTrackedSeconds = 0;
    std::string totalTimeTrackedFormatted;

    static const RecordType& recordType();
};

struct OverviewDocument {
    OverviewStats stats;
    Items<ClientDTO> clients;
    Items<ProjectDTO> projects;

    static const RecordType& recordType();
};

struct TodaySummary {
    std::int64_t dueToday = 0;
    std::int64_t overdue = 0;
    std::int64_t runningTimers = 0;

    static const RecordType& recordType();
};

struct TodayDocument {
    Date date;
    Items<TaskDTO> tasksDueToday;
    Items<TaskDTO> overdueTasks;
    std::vector<TimeEntryItem> runningTimers;
    TodaySummary summary;

    static const RecordType& recordType();
};

struct OverdueDocument {
    Items<TaskDTO> overdueTasks;
    std::int64_t count = 0;

    static const RecordType& recordType();
};

struct RunningTimersDocument {
    std::vector<TimeEntryItem> runningTimers;
    std::int64_t count = 0;

    static const RecordType& recordType();
};

struct PinnedNotesDocument {
    Items<NoteDTO> pinnedNotes;
    std::int64_t count = 0;

    static const RecordType& recordType();
};

struct ClientName {
    UUID id;
    std::string name;

    static const RecordType& recordType();
};

struct ProjectStats {
    std::int64_t totalTasks = 0;
    std::int64_t completedTasks = 0;
    std::int64_t activeTasks = 0;
    std::int64_t overdueTasks = 0;
    std::int64_t noteCount = 0;
    double totalTimeSeconds = 0;
    std::string totalTimeFormatted;

    static const RecordType& recordType();
};

struct ProjectDocument {
    Item<ProjectDTO> project;
    Nullable<ClientName> client;
    Items<TaskDTO> tasks;
    Items<NoteDTO> notes;
    std::vector<TimeEntryItem> timeEntries;
    ProjectStats stats;

    static const RecordType& recordType();
};

} // namespace

template <class Value>
struct WireForm<Nullable<Value>> {
    static constexpr WireShape shape = WireForm<Value>::shape;
    static void write(JsonWriter& writer, const Nullable<Value>& value) {
        if (value)
            WireForm<Value>::write(writer, *value);
        else
            writer.null();
    }
    static bool read(const Json&, Nullable<Value>&) { return false; } // only ever written
};

template <class Record>
struct WireForm<Item<Record>> {
    static constexpr WireShape shape = WireForm<Record>::shape;
    static void write(JsonWriter& writer, const Item<Record>& item) {
        writeRecord(writer, Record::recordType(), &item.record, AbsentField::null);
    }
    static bool read(const Json&, Item<Record>&) { return false; } // only ever written
};

namespace {

const RecordType& TimeEntryItem::recordType() {
    static constexpr auto fields = wireFields({
        wireField<&TimeEntryItem::id>("id"),
        wireField<&TimeEntryItem::startTime>("startTime"),
        wireField<&TimeEntryItem::endTime>("endTime"),
        wireField<&TimeEntryItem::duration>("duration"),
        wireField<&TimeEntryItem::durationFormatted>("durationFormatted"),
        wireField<&TimeEntryItem::taskId>("taskId"),
        wireField<&TimeEntryItem::taskTitle>("taskTitle"),
        wireField<&TimeEntryItem::projectId>("projectId"),
        wireField<&TimeEntryItem::projectName>("projectName"),
        wireField<&TimeEntryItem::notes>("notes"),
    });
    static constexpr RecordType type{"TimeEntryItem", fields};
    return type;
}

const RecordType& OverviewStats::recordType() {
    static constexpr auto fields = wireFields({
        wireField<&OverviewStats::totalClients>("totalClients"),
        wireField<&OverviewStats::activeClients>("activeClients"),
        wireField<&OverviewStats::totalProjects>("totalProjects"),
        wireField<&OverviewStats::activeProjects>("activeProjects"),
        wireField<&OverviewStats::totalTasks>("totalTasks"),
        wireField<&OverviewStats::completedTasks>("completedTasks"),
        wireField<&OverviewStats::activeTasks>("activeTasks"),
        wireField<&OverviewStats::totalTimeTrackedSeconds>("totalTimeTrackedSeconds"),
        wireField<&OverviewStats::totalTimeTrackedFormatted>("totalTimeTrackedFormatted"),
    });
    static constexpr RecordType type{"OverviewStats", fields};
    return type;
}

const RecordType& OverviewDocument::recordType() {
    static constexpr auto fields = wireFields({
        wireField<&OverviewDocument::stats>("stats"),
        wireField<&OverviewDocument::clients>("clients"),
        wireField<&OverviewDocument::projects>("projects"),
    });
    static constexpr RecordType type{"OverviewDocument", fields};
    return type;
}

const RecordType& TodaySummary::recordType() {
    static constexpr auto fields = wireFields({
        wireField<&TodaySummary::dueToday>("dueToday"),
        wireField<&TodaySummary::overdue>("overdue"),
        wireField<&TodaySummary::runningTimers>("runningTimers"),
    });
    static constexpr RecordType type{"TodaySummary", fields};
    return type;
}

const RecordType& TodayDocument::recordType() {
    static constexpr auto fields = wireFields({
        wireField<&TodayDocument::date>("date"),
        wireField<&TodayDocument::tasksDueToday>("tasksDueToday"),
        wireField<&TodayDocument::overdueTasks>("overdueTasks"),
        wireField<&TodayDocument::runningTimers>("runningTimers"),
        wireField<&TodayDocument::summary>("summary"),
    });
    static constexpr RecordType type{"TodayDocument", fields};
    return type;
}

const RecordType& OverdueDocument::recordType() {
    static constexpr auto fields = wireFields({
        wireField<&OverdueDocument::overdueTasks>("overdueTasks"),
        wireField<&OverdueDocument::count>("count"),
    });
    static constexpr RecordType type{"OverdueDocument", fields};
    return type;
}

const RecordType& RunningTimersDocument::recordType() {
    static constexpr auto fields = wireFields({
        wireField<&RunningTimersDocument::runningTimers>("runningTimers"),
        wireField<&RunningTimersDocument::count>("count"),
    });
    static constexpr RecordType type{"RunningTimersDocument", fields};
    return type;
}

const RecordType& PinnedNotesDocument::recordType() {
    static constexpr auto fields = wireFields({
        wireField<&PinnedNotesDocument::pinnedNotes>("pinnedNotes"),
        wireField<&PinnedNotesDocument::count>("count"),
    });
    static constexpr RecordType type{"PinnedNotesDocument", fields};
    return type;
}

const RecordType& ClientName::recordType() {
    static constexpr auto fields = wireFields({
        wireField<&ClientName::id>("id"),
        wireField<&ClientName::name>("name"),
    });
    static constexpr RecordType type{"ClientName", fields};
    return type;
}

const RecordType& ProjectStats::recordType() {
    static constexpr auto fields = wireFields({
        wireField<&ProjectStats::totalTasks>("totalTasks"),
        wireField<&ProjectStats::completedTasks>("completedTasks"),
        wireField<&ProjectStats::activeTasks>("activeTasks"),
        wireField<&ProjectStats::overdueTasks>("overdueTasks"),
        wireField<&ProjectStats::noteCount>("noteCount"),
        wireField<&ProjectStats::totalTimeSeconds>("totalTimeSeconds"),
        wireField<&ProjectStats::totalTimeFormatted>("totalTimeFormatted"),
    });
    static constexpr RecordType type{"ProjectStats", fields};
    return type;
}

const RecordType& ProjectDocument::recordType() {
    static constexpr auto fields = wireFields({
        wireField<&ProjectDocument::project>("project"),
        wireField<&ProjectDocument::client>("client"),
        wireField<&ProjectDocument::tasks>("tasks"),
        wireField<&ProjectDocument::notes>("notes"),
        wireField<&ProjectDocument::timeEntries>("timeEntries"),
        wireField<&ProjectDocument::stats>("stats"),
    });
    static constexpr RecordType type{"ProjectDocument", fields};
    return type;
}

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
