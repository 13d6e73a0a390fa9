#include "CLI/Commands.h"
#include "CLI/Session.h"
#include "Models/Formatters.h"
#include "Models/ProjectTask.h"
#include "Models/TimeEntry.h"
#include "Services/TimerService.h"

#include <cstdio>
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
    return fmt::format("{}  {}", entry.displayName(), clockForm(entry.duration(now)));
}

Json describe(const TimeEntry* entry, Date now) {
    if (entry == nullptr)
        return Json::Object{{"isRunning", false}};
    const ProjectTask* task = entry->task();
    return Json::Object{
        {"isRunning", true},
        {"timeEntryId", entry->id().string()},
        {"taskId", task != nullptr ? Json(task->id().string()) : Json()},
        {"displayName", entry->displayName()},
        {"startTime", formatISO8601(entry->startTime())},
        {"elapsedTime", entry->duration(now)},
    };
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
    if (const TimeEntry* former = timer.service.activeEntry(timer.context))
        fmt::print("Stopped: {}\n", line(*former, session.clock().now()));
    timer.service.start(*task, timer.context);
    timer.context.save();
    fmt::print("Started: {}\n", task->title());
    return ExitStatus::success;
}

ExitStatus stopTimer(const ProcessInfo& process) {
    Session session(process);
    if (session.hasFailed())
        return ExitStatus::failure;
    TimerSession timer(session);
    TimeEntry* entry = timer.service.activeEntry(timer.context);
    if (entry == nullptr)
        throw std::runtime_error("no timer is running");
    timer.service.stop(timer.context);
    timer.context.save(); // reports what stop() keeps to itself
    fmt::print("Stopped: {}\n", line(*entry, session.clock().now()));
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
    const Date now = session.clock().now();
    if (json)
        fmt::print("{}\n", describe(entry, now).text(Json::Style::pretty));
    else
        fmt::print("{}\n", entry != nullptr ? line(*entry, now) : "No timer is running");
    return ExitStatus::success;
}

} // namespace quillorn
