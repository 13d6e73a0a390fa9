#include "CLI/Output.h"
#include "CLI/StoreWork.h"
#include "CLI/TimeCommands.h"
#include "CLI/Words.h"
#include "Models/Formatters.h"
#include "Models/ProjectTask.h"
#include "Models/TimeEntrySearch.h"
#include "Platform/Calendar.h"
#include "Platform/Terminal.h"
#include "Platform/TerminationSignals.h"
#include "Records/RecordChoice.h"
#include "Records/TimeEntryDTO.h"
#include "Services/TimerService.h"

#include <cstdio>
#include <fmt/core.h>
#include <stdexcept>

namespace quillorn {

namespace {

/// "Write the offer  0:05:12".
std::string line(const TimeEntry& entry, Date now) {
    return fmt::format("{}  {}", shown(entry.displayName()), clockForm(entry.duration(now)));
}

/// All that run in the store, the latest first; programs can have started more than the timer's one.
std::vector<TimeEntry*> runningEntries(ModelContext& context) {
    return findTimeEntries(context, {.includeArchived = true, .running = true});
}

void printStillRunning(const std::vector<TimeEntry*>& entries, Date now) {
    for (const TimeEntry* each : entries)
        fmt::print("Still running: {}\n", line(*each, now));
    if (!entries.empty())
        fmt::print("\"quillorn timer stop --all\" stops all that runs\n");
}

void printRecords(StoreWork& work, const std::vector<TimeEntry*>& entries) {
    printJson([&](JsonWriter& writer) { writeRows(writer, TimeEntryRows(work.context, entries, work.now)); });
}

/// The timer of the store, in a context that nobody else writes beside before its first save.
ExitStatus withTimer(const ProcessInfo& process,
                     const std::function<ExitStatus(StoreWork& work, TimerService& timer)>& act) {
    return withStore(process, ModelContext::Intent::update, [&](StoreWork& work) {
        TimerService& timer = work.session.app().timerService();
        timer.resumeRunningEntry(work.context);
        return act(work, timer);
    });
}

ExitStatus start(StoreWork& work, TimerService& timer, ProjectTask& task, bool json) {
    TimeEntry* former = timer.activeEntry(work.context);
    timer.start(task, work.context);
    work.context.save();
    TimeEntry* entry = timer.activeEntry(work.context);
    if (json) {
        printRecords(work, former != nullptr ? std::vector{entry, former} : std::vector{entry});
        return ExitStatus::success;
    }
    if (former != nullptr)
        fmt::print("Stopped: {}\n", line(*former, work.now));
    fmt::print("Started: {}\n", shown(task.title()));
    std::vector<TimeEntry*> others = runningEntries(work.context);
    std::erase(others, entry);
    printStillRunning(others, work.now);
    return ExitStatus::success;
}

ExitStatus stop(StoreWork& work, const std::vector<TimeEntry*>& entries, bool json) {
    if (entries.empty())
        throw std::runtime_error("no timer is running");
    for (TimeEntry* each : entries)
        each->setEndTime(work.now);
    work.context.save();
    if (json) {
        printRecords(work, entries);
        return ExitStatus::success;
    }
    for (const TimeEntry* each : entries)
        fmt::print("Stopped: {}\n", line(*each, work.now));
    printStillRunning(runningEntries(work.context), work.now);
    return ExitStatus::success;
}

std::vector<TimeEntry*> activeEntries(StoreWork& work, const TimerService& timer) {
    TimeEntry* entry = timer.activeEntry(work.context);
    return entry != nullptr ? std::vector{entry} : std::vector<TimeEntry*>();
}

/// The timer's entry stands first, since it is the one that began last.
std::string statusLines(const std::vector<TimeEntry*>& entries, Date now) {
    std::string lines;
    for (const TimeEntry* each : entries)
        lines += line(*each, now) + "\n";
    return lines.empty() ? "No timer is running\n" : lines;
}

/// Once a second, over what was shown before; into a pipe below it.
void watch(Session& session) {
    std::size_t shownLines = 0;
    const auto show = [&] {
        ModelContext context(session.app().container());
        const std::string lines = statusLines(runningEntries(context), session.clock().now());
        if (isTerminal(stdout) && shownLines > 0)
            fmt::print("\x1B[{}A\x1B[J", shownLines);
        fmt::print("{}", lines);
        (void)std::fflush(stdout);
        shownLines = static_cast<std::size_t>(std::ranges::count(lines, '\n'));
    };
    const TerminationSignals signals([&](int) { session.mainQueue().stop(); });
    show();
    const auto timer = session.mainQueue().every(std::chrono::seconds(1), show);
    session.mainQueue().run();
    session.mainQueue().cancel(timer);
}

} // namespace

ExitStatus startTimer(const TimerOptions& options, const ProcessInfo& process) {
    return withTimer(process, [&](StoreWork& work, TimerService& timer) {
        return start(work, timer, chooseTask(work.context, options.task.value_or(""), work.text()), options.json);
    });
}

ExitStatus stopTimer(const TimerOptions& options, const ProcessInfo& process) {
    return withTimer(process, [&](StoreWork& work, TimerService& timer) {
        return stop(work, options.all ? runningEntries(work.context) : activeEntries(work, timer), options.json);
    });
}

ExitStatus toggleTimer(const TimerOptions& options, const ProcessInfo& process) {
    return withTimer(process, [&](StoreWork& work, TimerService& timer) {
        if (options.task) {
            ProjectTask& task = chooseTask(work.context, *options.task, work.text());
            if (!timer.isActive(task))
                return start(work, timer, task, options.json);
        } else if (!timer.isRunning()) {
            throw std::runtime_error("no timer is running; name the task to start on");
        }
        return stop(work, activeEntries(work, timer), options.json);
    });
}

ExitStatus adjustTimer(const TimerOptions& options, const ProcessInfo& process) {
    return withTimer(process, [&](StoreWork& work, TimerService& timer) {
        TimeEntry* entry = timer.activeEntry(work.context);
        if (entry == nullptr)
            throw std::runtime_error("no timer is running");
        const When when = requireWhen(options.when, work.now, work.calendar());
        if (!when.hasTime())
            throw std::runtime_error(fmt::format("\"{}\" has no time of day", options.when));
        const Date date = when.date(work.now, work.calendar());
        if (date > work.now)
            throw std::runtime_error(fmt::format("\"{}\" lies in the future", options.when));
        entry->setStartTime(date);
        work.context.save();
        if (options.json)
            printRecords(work, {entry});
        else
            fmt::print("Started {}: {}\n", smartDate(date, work.now, work.calendar()), line(*entry, work.now));
        return ExitStatus::success;
    });
}

ExitStatus showTimer(const TimerOptions& options, const ProcessInfo& process) {
    if (options.watches) {
        Session session(process);
        if (session.hasFailed())
            return ExitStatus::failure;
        watch(session);
        return ExitStatus::success;
    }
    return withStore(process, ModelContext::Intent::read, [&](StoreWork& work) {
        const std::vector<TimeEntry*> entries = runningEntries(work.context);
        if (options.json)
            printRecords(work, entries);
        else
            fmt::print("{}", statusLines(entries, work.now));
        return ExitStatus::success;
    });
}

} // namespace quillorn
