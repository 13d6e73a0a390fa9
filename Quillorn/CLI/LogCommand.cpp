#include "CLI/Output.h"
#include "CLI/StoreWork.h"
#include "CLI/TimeCommands.h"
#include "CLI/Words.h"
#include "Models/Formatters.h"
#include "Models/Project.h"
#include "Models/ProjectTask.h"
#include "Platform/Calendar.h"
#include "Records/RecordChoice.h"
#include "Records/TimeEntryDTO.h"
#include "Views/LoggedTime.h"
#include "Views/TimeEntryRules.h"

#include <fmt/core.h>
#include <stdexcept>

namespace quillorn {

namespace {

std::optional<std::chrono::local_days> dayOf(const std::optional<std::string>& text, Date now,
                                             const Calendar& calendar) {
    if (!text)
        return std::nullopt;
    const When when = requireWhen(*text, now, calendar);
    if (!when.day || when.hasTime())
        throw std::runtime_error(fmt::format("\"{}\" is no day", *text));
    return when.day;
}

Json recordOfLog(StoreWork& work, TimeEntry& entry, const std::vector<TimeEntry*>& overlaps) {
    Json record =
        Json::parse(jsonText([&](JsonWriter& writer) { write(writer, recordOf<TimeEntryRows>(entry, work.now)); }));
    Json list = Json::parse(
        jsonText([&](JsonWriter& writer) { writeRows(writer, TimeEntryRows(work.context, overlaps, work.now)); }));
    record.asObject()->emplace("endsNextDay", !work.calendar().isSameDay(entry.startTime(), *entry.endTime()));
    record.asObject()->emplace("overlaps", std::move(list));
    return record;
}

} // namespace

ExitStatus logTime(const LogOptions& options, const ProcessInfo& process) {
    return withStore(process, ModelContext::Intent::update, [&](StoreWork& work) {
        Project* project = nullptr;
        ProjectTask* task = nullptr;
        if (options.project)
            project = &chooseProject(work.context, *options.project, work.text());
        else
            task = &chooseTask(work.context, options.task, work.text());
        const auto [start, end] =
            readLoggedTime(options.time, dayOf(options.date, work.now, work.calendar()), work.now, work.calendar());
        const auto overlaps = overlappingEntries(work.context, start, end, work.now);
        auto& entry = work.context.insert<TimeEntry>(TimeEntry::Arguments{
            .task = task, .project = project, .startTime = start, .notes = options.notes, .title = options.title});
        entry.setEndTime(end);
        work.context.save();
        if (options.json) {
            printJson(recordOfLog(work, entry, overlaps));
            return ExitStatus::success;
        }
        fmt::print("Logged: {}  {}  ({}, {})\n", shown(entry.displayName()),
                   durationLine(start, end, work.calendar()).text, work.calendar().mediumDate(start),
                   timeSpan(start, end, work.calendar()));
        if (const auto warning = overlapWarning(overlaps, work.calendar()))
            printError(*warning);
        return ExitStatus::success;
    });
}

} // namespace quillorn
