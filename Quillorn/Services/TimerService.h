#pragma once

#include "Platform/Date.h"
#include "Platform/MainQueue.h"
#include "Platform/Observers.h"
#include "Platform/UUID.h"
#include "Store/ModelContext.h"

#include <optional>
#include <utility>
#include <vector>

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
    TimerService(MainQueue& queue, const Clock& clock);
    ~TimerService();
    TimerService(const TimerService&) = delete;
    TimerService& operator=(const TimerService&) = delete;

    /// Tells after the state below has changed, once a second while the timer runs.
    Observation observe(Observers<>::Handler handler) { return m_observers.add(std::move(handler)); }

    bool isRunning() const { return m_running.has_value(); }
    /// What the display shows, in seconds; 0 while nothing runs.
    double elapsedTime() const { return m_elapsedTime; }
    std::optional<Date> startTime() const;
    /// The running entry; null when nothing runs, and for an entry that is gone.
    TimeEntry* activeEntry(ModelContext& context) const;
    /// Its task; null also for an entry without one.
    ProjectTask* activeTask(ModelContext& context) const;
    bool isActive(const ProjectTask& task) const;

    /// Ends the entry that runs and begins a new one on the task, which goes in progress: a completed one is reopened.
    /// The caller saves, so that both are on the disk or neither.
    void start(ProjectTask& task, ModelContext& context);
    /// Ends the running entry and saves; a failure to save is not reported, the context tries again with its next save.
    void stop(ModelContext& context);
    /// Stops on the running task; starts on every other one.
    void toggle(ProjectTask& task, ModelContext& context);
    /// Moves the start of the running entry and saves, as stop() does. Nothing happens while no entry runs.
    void adjustStart(Date date, ModelContext& context);
    /// Takes up the entry that began last of those that run; for the launch.
    void resumeRunningEntry(ModelContext& context);

    /// To be told of every change that is on the disk. Lets go of an entry that has been ended or deleted, by whatever
    /// surface, and takes up a timer that another process has started. Entries that other surfaces of this process
    /// begin are never taken up.
    void storeDidChange(const ChangeSet& changes, ModelContext& context);

  private:
    struct Running {
        UUID entry;
        std::optional<UUID> task;
        Date startTime;
    };

    void takeUp(const TimeEntry& entry);
    void takeUpLatest(const std::vector<TimeEntry*>& entries);
    void endActiveEntry(ModelContext& context, Date now) const;
    void followActiveEntry(ModelContext& context);
    void tick();
    void reset();

    MainQueue& m_queue;
    const Clock& m_clock;
    std::optional<Running> m_running;
    double m_elapsedTime = 0;
    std::optional<MainQueue::TimerId> m_timer;
    Observers<> m_observers;
};

} // namespace quillorn
