#include "Services/DayChangeObserver.h"

#include "Platform/Calendar.h"
#include "Platform/Clock.h"
#include "Platform/WakeSignals.h"

#include <algorithm>
#include <utility>

namespace quillorn {

DayChangeObserver::DayChangeObserver(const Clock& clock, const Calendar& calendar, MainQueue& queue,
                                     WakeSignals& wakeSignals)
    : m_clock(clock),
      m_calendar(calendar),
      m_queue(queue),
      m_currentDay(calendar.startOfDay(clock.now())),
      m_jumps(wakeSignals.observe([this] { significantTimeChange(); })) {
    arm();
}

DayChangeObserver::~DayChangeObserver() {
    if (m_timer)
        m_queue.cancel(*m_timer);
}

void DayChangeObserver::significantTimeChange() {
    const Date today = m_calendar.startOfDay(m_clock.now());
    arm();
    if (std::exchange(m_currentDay, today) != today)
        m_observers.tell();
}

void DayChangeObserver::arm() {
    if (m_timer)
        m_queue.cancel(*m_timer);
    const Date now = m_clock.now();
    const Date tomorrow = m_calendar.startOfDay(m_calendar.addDays(m_calendar.startOfDay(now), 1));
    // Where the calendar can't say, it is looked at soon, and not all the time.
    const auto delay = std::max(std::chrono::ceil<std::chrono::milliseconds>(tomorrow - now), {});
    m_timer = m_queue.after(std::max(delay, std::chrono::milliseconds{1}), [this] {
        m_timer.reset();
        significantTimeChange();
    });
}

} // namespace quillorn
