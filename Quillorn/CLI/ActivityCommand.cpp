#include "CLI/Output.h"
#include "CLI/StoreWork.h"
#include "CLI/Table.h"
#include "CLI/TimeCommands.h"
#include "Models/Client.h"
#include "Models/Formatters.h"
#include "Models/Note.h"
#include "Models/Project.h"
#include "Models/ProjectTask.h"
#include "Models/Sorting.h"
#include "Models/TimeEntry.h"
#include "Platform/Calendar.h"
#include "Records/NoteDTO.h"
#include "Records/RecordChoice.h"
#include "Records/TaskRecord.h"
#include "Views/ActivityDashboardHeader.h"
#include "Views/TimeReport.h"
#include "Views/TodaySummaryView.h"

#include <fmt/core.h>

namespace quillorn {

namespace {

using Items = std::vector<ActivityItem>;

Items itemsOf(StoreWork& work, const ActivityOptions& options) {
    std::optional<UUID> filter;
    if (options.client)
        filter = chooseClient(work.context, *options.client, work.text()).id();
    ModelContext& context = work.context;
    Items items = activityItems(context.fetch<ProjectTask>(), context.fetch<TimeEntry>(), context.fetch<Note>(),
                                context.fetch<Project>(), context.fetch<Client>(), filter, work.now);
    if (options.days) {
        const Calendar& calendar = work.calendar();
        const Date first = calendar.startOfDay(calendar.addDays(work.now, 1 - *options.days));
        std::erase_if(items, [&](const ActivityItem& item) { return item.timestamp < first; });
    }
    return items;
}

Json jsonOf(const Items& items) {
    Json::Array list;
    for (const ActivityItem& item : items) {
        Json::Object object{{"id", item.id},
                            {"kind", nameOf(item.kind)},
                            {"title", item.title},
                            {"timestamp", formatISO8601(item.timestamp)}};
        if (item.subtitle)
            object.emplace("subtitle", *item.subtitle);
        if (item.clientID)
            object.emplace("clientId", item.clientID->string());
        list.emplace_back(std::move(object));
    }
    return list;
}

void print(const Items& items, const StoreWork& work, bool isFiltered) {
    using enum Table::Column::Align;
    using enum Table::Column::Cut;
    if (isForPeople()) {
        if (items.empty()) {
            fmt::print("{}\n",
                       isFiltered ? "No activity for this client yet" : "Activity will appear here as you work");
            return;
        }
        const auto header = ActivityDashboardHeader::of(items, work.now, work.calendar());
        fmt::print("{} today · {}\n", header.today, header.line);
    }
    Table table({{""}, {""}, {"Time"}, {"What", left, ifNarrow}, {"Where", left, ifNarrow}, {""}});
    std::optional<DateGroup> group;
    for (const ActivityItem& item : items) {
        if (const DateGroup own = dateGroup(item.timestamp, work.now, work.calendar()); own != group) {
            group = own;
            table.addHeading(std::string(labelOf(own)));
        }
        table.add({{item.id, ""},
                   {std::string(nameOf(item.kind)), ""},
                   {formatISO8601(item.timestamp), smartDate(item.timestamp, work.now, work.calendar()), Paint::dim},
                   item.title,
                   {item.subtitle.value_or(""), Paint::cyan},
                   {item.clientID ? item.clientID->string() : "", ""}});
    }
    table.print();
}

/// What the day has brought, the latest first.
struct Day {
    std::vector<ProjectTask*> completed;
    std::vector<Note*> notes;
    DaySummary summary;
};

template <class Object>
std::vector<Object*> fetched(StoreWork& work, const ObservedCondition& condition) {
    return work.context.fetch<Object>({.where = condition.where, .values = condition.values});
}

Day todayOf(StoreWork& work) {
    Day day{fetched<ProjectTask>(work, completedOnDay(work.now, work.calendar())),
            fetched<Note>(work, notesOfDay(work.now, work.calendar())),
            {}};
    sortByKey(day.completed, [](const ProjectTask& task) { return *task.completedAt(); }, std::greater<>());
    sortLatestFirst(day.notes, &Note::createdAt);
    const auto entries = fetched<TimeEntry>(work, entriesOfDay(work.now, work.calendar()));
    day.summary = {day.completed.size(), day.notes.size(), entries.size()};
    for (const TimeEntry* entry : entries)
        day.summary.trackedSeconds += entry->duration(work.now);
    return day;
}

void writeDay(JsonWriter& writer, StoreWork& work, const Day& day) {
    const auto count = [&](const char* name, std::size_t value) {
        writer.key(name);
        writer.integer(static_cast<std::int64_t>(value));
    };
    writer.beginObject();
    writer.key("completed");
    writeRows(writer, TaskRecordRows(work.context, day.completed, work.now));
    count("completedCount", day.summary.completed);
    writer.key("date");
    writer.string(isoDay(std::chrono::local_days{work.calendar().day(work.now)}));
    count("entryCount", day.summary.entries);
    count("noteCount", day.summary.notes);
    writer.key("notes");
    writeRows(writer, NoteRows(work.context, day.notes, work.now));
    writer.key("trackedSeconds");
    writer.number(day.summary.trackedSeconds);
    writer.endObject();
}

void printDay(const Day& day, const StoreWork& work) {
    using enum Table::Column::Align;
    using enum Table::Column::Cut;
    if (isForPeople() && day.summary.isEmpty()) {
        fmt::print("{}\n{}\n", painted(TodaySummaryView::emptyTitle, Paint::bold), TodaySummaryView::emptyMessage);
        return;
    }
    if (isForPeople()) {
        fmt::print("{}\n\n", painted(TodaySummaryView::heading, Paint::bold));
        for (const SummaryTile& tile : summaryTiles(day.summary))
            fmt::print("{:<18}{} {}\n", tile.label, tile.value, tile.detail);
        fmt::print("\n");
    }
    Table table({{""}, {""}, {"Time"}, {"What", left, ifNarrow}, {"", left, ifNarrow}});
    if (!day.completed.empty())
        table.addHeading(std::string(TodaySummaryView::completedTitle));
    for (const ProjectTask* task : day.completed) {
        const auto row = TodaySummaryView::rowOf(*task, work.calendar());
        table.add({{"completed", ""},
                   {row.id.string(), ""},
                   {formatISO8601(*task->completedAt()), row.time, Paint::dim},
                   row.title,
                   {row.subtitle, Paint::cyan}});
    }
    if (!day.notes.empty())
        table.addHeading(std::string(TodaySummaryView::notesTitle));
    for (const Note* note : day.notes) {
        const auto row = TodaySummaryView::rowOf(*note, work.calendar());
        table.add({{row.isComment ? "comment" : "note", ""},
                   {row.id.string(), ""},
                   {formatISO8601(note->createdAt()), row.time, Paint::dim},
                   row.title,
                   row.subtitle});
    }
    table.print();
}

} // namespace

ExitStatus showActivity(const ActivityOptions& options, const ProcessInfo& process) {
    return withStore(process, ModelContext::Intent::read, [&](StoreWork& work) {
        const Items items = itemsOf(work, options);
        if (options.json)
            printJson(jsonOf(items));
        else
            print(items, work, options.client.has_value());
        return ExitStatus::success;
    });
}

ExitStatus showDay(bool json, const ProcessInfo& process) {
    return withStore(process, ModelContext::Intent::read, [&](StoreWork& work) {
        const Day day = todayOf(work);
        if (json)
            printJson([&](JsonWriter& writer) { writeDay(writer, work, day); });
        else
            printDay(day, work);
        return ExitStatus::success;
    });
}

} // namespace quillorn
