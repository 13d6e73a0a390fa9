#pragma once

#include "Platform/Clock.h"

#include <atomic>

namespace quillorn {

/// A clock that stands still until a test moves it. Safe to share between threads.
class FakeClock final : public Clock {
  public:
    Date now() const override { return m_now; }
    void advance(std::chrono::microseconds time) { m_now = now() + time; }

  private:
    std::atomic<Date> m_now = parseISO8601("2026-01-15T12:00:00Z").value(); // a Thursday
};

} // namespace quillorn
