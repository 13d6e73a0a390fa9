#include "App/TimeJumps.h"

#include "Platform/MainQueue.h"

#include <utility>

namespace quillorn {

TimeJumps::TimeJumps(std::unique_ptr<WakeSignals> machine, MainQueue& queue, Calendar& calendar,
                     const std::filesystem::path& timeZoneFile)
    : m_calendar(calendar),
      m_machine(std::move(machine)),
      m_jumps(m_machine->observe([this] { m_observers.tell(); })),
      m_self(std::make_shared<TimeJumps*>(this)),
      m_zone(watchTimeZone(
          [&queue, weak = std::weak_ptr(m_self)](const std::string& name) {
              queue.post([weak, name] {
                  if (const auto self = weak.lock())
                      (*self)->follow(name);
              });
          },
          timeZoneFile)) {}

void TimeJumps::follow(const std::string& timeZone) {
    if (timeZone == m_calendar.timeZone())
        return;
    m_calendar.setTimeZone(timeZone);
    m_observers.tell();
}

} // namespace quillorn
