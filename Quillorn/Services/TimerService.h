#pragma once

#include "Platform/Date.h"
#include "Platform/MainQueue.h"
#include "Platform/NotificationCenter.h"
#include "Platform/UUID.h"
#include "Store/ModelContext.h"

#include <functional>
#include <optional>
#include <unordered_set>

namespace quillorn {

class Clock;
class ProjectTask;
class TimeEntry;

/// The one interactive timer: a time entry without an end, on a task. It lives in the store, so it survives a quit;
/// this object only knows which entry it is, and holds no object of any context. Other entries may run in the store as
/// well (programs make them); they are not this service's. Belongs to the main thread; every operation gets the
/// caller's context.
class TimerService {
  public:
    TimerService(NotificationCenter& notifications, MainQueue& queue, const Clock& clock);
    ~TimerService();
    TimerService(const TimerService&) = delete;
    TimerService& operator=(const TimerService&) = delete;

    /// Called after the state below has changed, once a second while the timer runs.
    std::function<void()> onChange;

    bool isRunning() const { return m_running.has_value(); }
    /// What the display shows, in seconds; 0 while nothing runs.
    double elapsedTime() const { return m_elapsedTime; }
    std::optional<Date> startTime() const;
    /// The running entry; null when nothing runs, and for an entry that is gone.
    TimeEntry* activeEntry(ModelContext& context) const;
    /// Its task; null also for an entry without one.
    ProjectTask* activeTask(ModelContext& context) const;
    bool isActive(const ProjectTask& task) const;

    /// Stops a timer that runs, and begins a new entry on the task, which goes in progress: a completed one is
    /// reopened. The caller saves.
    void start(ProjectTask& task, ModelContext& context);
    /// Ends the running entry and saves; a failure to save is not reported, the context tries again with its next save.
    void stop(ModelContext& context);
    /// Stops on the running task; starts on every other one.
    void toggle(ProjectTask& task, ModelContext& context);
    /// Moves the start of the running entry and saves, as stop() does. Nothing happens while no entry runs.
    void adjustStart(Date date, ModelContext& context);
    /// Takes up the entry that began last of those that run; for the launch.
    void resumeRunningEntry(ModelContext& context);

    /// To be told of every change of the store. Lets go of an entry that has been ended or deleted, and takes up a
    /// timer that another process has started.
    void storeDidChange(const ChangeSet& changes, ModelContext& context);

  private:
    struct Running {
        UUID entry;
        std::optional<UUID> task;
        Date startTime;
    };

    void takeUp(const TimeEntry& entry);
    void followActiveEntry(ModelContext& context);
    /// Takes up the latest running entry that nobody has seen yet; all that run now count as seen.
    void takeUpUnseenEntry(ModelContext& context);
    void tick();
    void reset();
    void changed() const;

    MainQueue& m_queue;
    const Clock& m_clock;
    std::optional<Running> m_running;
    double m_elapsedTime = 0;
    std::optional<MainQueue::TimerId> m_timer;
    /// Running entries that are not for this service to take up any more: it had its choice, or they were made by
    /// another surface of this process.
    std::unordered_set<RowKey> m_seen;
    Observation m_completionObserver;
};

} // namespace quillorn
