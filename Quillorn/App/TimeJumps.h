#pragma once

#include "Platform/Calendar.h"
#include "Platform/FileWatch.h"
#include "Platform/WakeSignals.h"

#include <filesystem>
#include <memory>
#include <string>

namespace quillorn {

/// The machine's jumps of time, and those to another time zone, where the calendar goes first. Queue and calendar must
/// outlive it.
class TimeJumps final : public WakeSignals {
  public:
    TimeJumps(std::unique_ptr<WakeSignals> machine, MainQueue& queue, Calendar& calendar,
              const std::filesystem::path& timeZoneFile = systemTimeZoneFile);

    Observation observe(std::function<void()> handler) override { return m_observers.add(std::move(handler)); }

  private:
    void follow(const std::string& timeZone);

    Calendar& m_calendar;
    Observers<> m_observers;
    std::unique_ptr<WakeSignals> m_machine;
    Observation m_jumps;
    std::shared_ptr<TimeJumps*> m_self; // for what waits in the queue
    std::unique_ptr<FileWatch> m_zone;
};

} // namespace quillorn
