#pragma once

#include "Platform/Clock.h"

#include <atomic>

namespace quillorn {

/// A clock that stands still until a test moves it. Safe to share between threads.
class FakeClock final : public Clock {
  public:
    /// Starts at 2026-01-15T12:00:00Z, a Thursday, unless told otherwise.
    FakeClock();
    explicit FakeClock(Date start) : m_now(start) {}

    Date now() const override { return m_now; }
    void set(Date date) { m_now = date; }
    void advance(std::chrono::microseconds time) { m_now = now() + time; }

  private:
    std::atomic<Date> m_now;
};

} // namespace quillorn
