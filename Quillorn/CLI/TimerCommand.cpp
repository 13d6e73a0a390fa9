#include "CLI/Commands.h"
#include "CLI/Output.h"
#include "CLI/Session.h"
#include "Models/Formatters.h"
#include "Models/ProjectTask.h"
#include "Models/TimeEntrySearch.h"
#include "Services/TimerService.h"

#include <fmt/core.h>
#include <stdexcept>

namespace quillorn {

namespace {

/// The running timer of the user's store, in a context that nobody else writes beside before its first save.
struct TimerSession {
    explicit TimerSession(Session& session)
        : service(session.app().timerService()),
          context(session.app().container(), ModelContext::Intent::update) {
        service.resumeRunningEntry(context);
    }

    TimerService& service;
    ModelContext context;
};

/// "Write the offer  0:05:12".
std::string line(const TimeEntry& entry, Date now) {
    return fmt::format("{}  {}", shown(entry.displayName()), clockForm(entry.duration(now)));
}

/// All that run in the store, the latest first; programs can have started more than the timer's one.
std::vector<TimeEntry*> runningEntries(ModelContext& context) {
    return findTimeEntries(context, {.includeArchived = true, .running = true});
}

std::vector<TimeEntry*> entriesBeside(const TimeEntry* own, ModelContext& context) {
    std::vector<TimeEntry*> others = runningEntries(context);
    std::erase(others, own);
    return others;
}

void printStillRunning(const std::vector<TimeEntry*>& entries, Date now) {
    for (const TimeEntry* each : entries)
        fmt::print("Still running: {}\n", line(*each, now));
    if (!entries.empty())
        fmt::print("\"quillorn timer stop --all\" stops all that runs\n");
}

Json::Object describe(const TimeEntry& entry, Date now) {
    const ProjectTask* task = entry.task();
    return {
        {"timeEntryId", entry.id().string()}, {"taskId", task != nullptr ? Json(task->id().string()) : Json()},
        {"displayName", entry.displayName()}, {"startTime", formatISO8601(entry.startTime())},
        {"elapsedTime", entry.duration(now)},
    };
}

/// The timer's entry, and beside it those of others.
Json describe(const TimeEntry* entry, const std::vector<TimeEntry*>& others, Date now) {
    Json::Object object = entry != nullptr ? describe(*entry, now) : Json::Object{};
    object.emplace("isRunning", entry != nullptr);
    Json::Array list;
    for (const TimeEntry* each : others)
        list.emplace_back(describe(*each, now));
    if (entry != nullptr)
        object.emplace("others", std::move(list));
    return object;
}

} // namespace

ExitStatus startTimer(const std::string& taskId, const ProcessInfo& process) {
    const std::optional<UUID> id = UUID::parse(taskId);
    if (!id)
        throw std::runtime_error(fmt::format("\"{}\" is no task id", taskId));
    Session session(process);
    if (session.hasFailed())
        return ExitStatus::failure;
    TimerSession timer(session);
    auto* task = timer.context.find<ProjectTask>(*id);
    if (task == nullptr)
        throw std::runtime_error(fmt::format("there is no task with the id {}", id->string()));
    const TimeEntry* former = timer.service.activeEntry(timer.context);
    timer.service.start(*task, timer.context);
    timer.context.save();
    if (former != nullptr)
        fmt::print("Stopped: {}\n", line(*former, session.clock().now()));
    fmt::print("Started: {}\n", shown(task->title()));
    printStillRunning(entriesBeside(timer.service.activeEntry(timer.context), timer.context), session.clock().now());
    return ExitStatus::success;
}

ExitStatus stopTimer(bool all, const ProcessInfo& process) {
    Session session(process);
    if (session.hasFailed())
        return ExitStatus::failure;
    TimerSession timer(session);
    std::vector<TimeEntry*> entries;
    if (all)
        entries = runningEntries(timer.context);
    else if (TimeEntry* entry = timer.service.activeEntry(timer.context))
        entries = {entry};
    if (entries.empty())
        throw std::runtime_error("no timer is running");
    const Date now = session.clock().now();
    for (TimeEntry* each : entries)
        each->setEndTime(now);
    timer.context.save();
    for (const TimeEntry* each : entries)
        fmt::print("Stopped: {}\n", line(*each, now));
    printStillRunning(runningEntries(timer.context), now);
    return ExitStatus::success;
}

ExitStatus showTimer(bool json, const ProcessInfo& process) {
    Session session(process);
    if (session.hasFailed())
        return ExitStatus::failure;
    ModelContext context(session.app().container());
    TimerService& service = session.app().timerService();
    service.resumeRunningEntry(context);
    const TimeEntry* entry = service.activeEntry(context);
    const std::vector<TimeEntry*> others = entriesBeside(entry, context);
    const Date now = session.clock().now();
    if (json) {
        printJson(describe(entry, others, now));
        return ExitStatus::success;
    }
    fmt::print("{}\n", entry != nullptr ? line(*entry, now) : "No timer is running");
    for (const TimeEntry* each : others)
        fmt::print("{}\n", line(*each, now));
    return ExitStatus::success;
}

} // namespace quillorn
