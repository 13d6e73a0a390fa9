#pragma once

#include "Platform/Date.h"
#include "Platform/MainQueue.h"
#include "Platform/Observers.h"

#include <functional>
#include <optional>

namespace quillorn {

class Calendar;
class Clock;
class WakeSignals;

/// Knows what day it is, and tells when it is another one: at midnight, and when time has jumped. Belongs to the main
/// thread.
class DayChangeObserver {
  public:
    DayChangeObserver(const Clock& clock, const Calendar& calendar, MainQueue& queue, WakeSignals& wakeSignals);
    ~DayChangeObserver();
    DayChangeObserver(const DayChangeObserver&) = delete;
    DayChangeObserver& operator=(const DayChangeObserver&) = delete;

    /// The start of the current day.
    Date currentDay() const { return m_currentDay; }
    [[nodiscard]] Observation observe(std::function<void()> handler) { return m_observers.add(std::move(handler)); }

  private:
    void significantTimeChange();
    void arm();

    const Clock& m_clock;
    const Calendar& m_calendar;
    MainQueue& m_queue;
    Date m_currentDay;
    std::optional<MainQueue::TimerId> m_timer;
    Observers<> m_observers;
    Observation m_jumps;
};

} // namespace quillorn
