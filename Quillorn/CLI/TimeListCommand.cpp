#include "CLI/StoreWork.h"
#include "CLI/Table.h"
#include "CLI/TimeCommands.h"
#include "CLI/Words.h"
#include "Models/Client.h"
#include "Models/DeletionQuestions.h"
#include "Models/Formatters.h"
#include "Models/Project.h"
#include "Models/ProjectTask.h"
#include "Models/TimeEntrySearch.h"
#include "Platform/Calendar.h"
#include "Records/RecordChoice.h"
#include "Records/TimeEntryDTO.h"
#include "Views/TimeEntryRules.h"

#include <algorithm>
#include <fmt/core.h>
#include <stdexcept>

namespace quillorn {

namespace {

const Project* projectOf(const TimeEntry& entry) {
    if (entry.project() != nullptr || entry.task() == nullptr)
        return entry.project();
    return entry.task()->project();
}

/// Keeps the entries that began on the days, and of the client.
void restrict(std::vector<TimeEntry*>& entries, const TimeListOptions& options, StoreWork& work) {
    const auto startOf = [&](const std::string& text, int daysLater) {
        const Date day = requireWhen(text, work.now, work.calendar()).date(work.now, work.calendar());
        return work.calendar().startOfDay(work.calendar().addDays(day, daysLater));
    };
    if (options.from)
        std::erase_if(entries, [from = startOf(*options.from, 0)](auto* each) { return each->startTime() < from; });
    if (options.to)
        std::erase_if(entries, [end = startOf(*options.to, 1)](auto* each) { return each->startTime() >= end; });
    if (options.client) {
        const Client& client = chooseClient(work.context, *options.client, work.text());
        std::erase_if(entries, [&](const TimeEntry* each) {
            const Project* project = projectOf(*each);
            return project == nullptr || project->client() != &client;
        });
    }
    if (options.limit && entries.size() > *options.limit)
        entries.resize(*options.limit);
}

Table tableOf(const std::vector<TimeEntry*>& entries, const StoreWork& work) {
    using enum Table::Column::Align;
    using enum Table::Column::Cut;
    Table table({{"Id"},
                 {"Start"},
                 {"End"},
                 {"Time", right},
                 {"What", left, ifNarrow},
                 {"Project", left, ifNarrow},
                 {"Notes", left, ifNarrow}});
    for (const TimeEntry* each : entries) {
        const Project* project = projectOf(*each);
        const auto& end = each->endTime();
        table.add({{each->id().string(), shortId(each->id()), Paint::dim},
                   {formatISO8601(each->startTime()),
                    fmt::format("{} {}", work.calendar().format(each->startTime(), "EEE MMM d"),
                                timeSpan(each->startTime(), end, work.calendar()))},
                   {end ? formatISO8601(*end) : "", ""},
                   {fmt::format("{:.0f}", each->duration(work.now)), clockForm(each->duration(work.now)),
                    end ? Paint::plain : Paint::green},
                   each->displayName(),
                   {project != nullptr ? project->name() : "", Paint::cyan},
                   each->notes().value_or("")});
    }
    return table;
}

/// A moment of an entry; a time of day alone is one of its own day.
Date momentOf(const std::string& text, Date day, const StoreWork& work) {
    const When when = requireWhen(text, work.now, work.calendar());
    if (!when.hasTime())
        throw std::runtime_error(fmt::format("\"{}\" has no time of day", text));
    return when.date(when.day ? work.now : day, work.calendar());
}

std::optional<std::string> textOrNone(const std::string& text) {
    return text.empty() ? std::nullopt : std::optional(text);
}

void changeTimes(TimeEntry& entry, const TimeEditOptions& options, const StoreWork& work) {
    Date start = entry.startTime();
    std::optional<Date> end = entry.endTime();
    if (options.start)
        start = momentOf(*options.start, entry.startTime(), work);
    if (options.end)
        end = momentOf(*options.end, start, work);
    // "11:30pm" to "1am": a time of day alone is the next one after the start.
    const bool isTimeAlone = options.end && !requireWhen(*options.end, work.now, work.calendar()).day &&
                             !requireWhen(*options.end, work.now, work.calendar()).instant;
    if (isTimeAlone)
        end = effectiveEnd(start, *end, work.calendar());
    if (end && *end <= start)
        throw std::runtime_error(*end == start ? std::string(DurationLine::mustDiffer)
                                               : "it would end before it began");
    if (!end && start > work.now)
        throw std::runtime_error("a running timer can't start in the future");
    entry.setStartTime(start);
    entry.setEndTime(end);
}

} // namespace

ExitStatus listTime(const TimeListOptions& options, const ProcessInfo& process) {
    return withStore(process, ModelContext::Intent::read, [&](StoreWork& work) {
        TimeEntrySearch search{.includeArchived = true};
        if (options.running)
            search.running = true;
        if (options.task)
            search.taskId = chooseTask(work.context, *options.task, work.text()).id();
        if (options.project)
            search.projectId = chooseProject(work.context, *options.project, work.text()).id();
        auto entries = findTimeEntries(work.context, search);
        restrict(entries, options, work);
        if (options.json)
            printJson([&](JsonWriter& writer) { writeRows(writer, TimeEntryRows(work.context, entries, work.now)); });
        else
            tableOf(entries, work).print();
        return ExitStatus::success;
    });
}

ExitStatus editTime(const TimeEditOptions& options, const ProcessInfo& process) {
    Batch batch(options.entries);
    return withStore(process, ModelContext::Intent::update, [&](StoreWork& work) {
        ProjectTask* task = options.task ? &chooseTask(work.context, *options.task, work.text()) : nullptr;
        Project* project = options.project ? &chooseProject(work.context, *options.project, work.text()) : nullptr;
        const Chosen<TimeEntryRows> chosen{options.entries, chooseTimeEntry, options.json};
        return changeEach(work, batch, chosen, "Changed", [&](TimeEntry& entry) -> TimeEntry& {
            changeTimes(entry, options, work);
            if (task != nullptr || project != nullptr) {
                entry.setTask(task);
                entry.setProject(project);
            }
            if (options.title)
                entry.setTitle(textOrNone(*options.title));
            if (options.notes)
                entry.setNotes(textOrNone(*options.notes));
            return entry;
        });
    });
}

ExitStatus deleteTime(const TimeEditOptions& options, const ProcessInfo& process) {
    const Chosen<TimeEntryRows> chosen{options.entries, chooseTimeEntry, options.json};
    const auto question = [](const std::vector<TimeEntry*>& entries) {
        if (entries.size() == 1)
            return deletionOfTimeEntry(*entries.front());
        return Confirmation{fmt::format("Delete {} Time Entries?", entries.size()),
                            "This permanently deletes them. This can’t be undone."};
    };
    return deleteEach(process, chosen, options.isConfirmed, question, removeAlone);
}

} // namespace quillorn
