#pragma once

#include "Platform/MainQueue.h"
#include "Support/FakeClock.h"

#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

namespace quillorn {

/// A main queue that runs when a test says so, on the thread of the test. advance() moves it and the clock together;
/// a clock that is set by hand jumps without its timers, as a system's clock does.
class ManualQueue final : public MainQueue {
  public:
    explicit ManualQueue(FakeClock& clock) : m_clock(clock) {}
    ~ManualQueue() override;

    /// Runs what was posted, and what that posts, until nothing is left.
    void runPosted() { advance(std::chrono::milliseconds{0}); }
    /// Runs what was posted and every timer that falls due within `time`, each at its own instant.
    void advance(std::chrono::milliseconds time);

    std::size_t timerCount() const;
    /// What work has thrown, in words.
    std::vector<std::string> failures() const;

    void post(Work work) override;
    TimerId after(std::chrono::milliseconds delay, Work work) override;
    TimerId every(std::chrono::milliseconds period, Work work) override;
    void cancel(TimerId timer) override;

  private:
    struct Timer {
        std::chrono::milliseconds due;
        std::chrono::milliseconds period; // zero: once
        std::shared_ptr<const Work> work;
    };
    using Timers = std::map<std::uint64_t, Timer>;

    TimerId add(std::chrono::milliseconds delay, std::chrono::milliseconds period, Work work);
    bool runNext(std::chrono::milliseconds end);
    void moveTo(std::chrono::milliseconds moment);
    void run(const Work& work);

    FakeClock& m_clock;
    mutable std::mutex m_mutex;
    std::chrono::milliseconds m_elapsed{0};
    Timers m_timers; // and what was posted, as timers that are due
    std::uint64_t m_lastTimer = 0;
    std::vector<std::string> m_failures;
};

} // namespace quillorn
