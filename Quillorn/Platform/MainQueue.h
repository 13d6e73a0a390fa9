#pragma once

#include <chrono>
#include <cstdint>
#include <functional>

namespace quillorn {

/// The one thread on which services and their state live, as a queue of work for it. Safe to call from any thread;
/// the work runs on the main thread in the order of posting. Nothing that work throws leaves the queue.
class MainQueue {
  public:
    using Work = std::function<void()>;
    enum class TimerId : std::uint64_t {};

    virtual ~MainQueue() = default;

    virtual void post(Work work) = 0;
    /// Runs `work` once, `delay` from now.
    virtual TimerId after(std::chrono::milliseconds delay, Work work) = 0;
    /// Runs `work` every `period`, the first time one period from now. Late ticks are not made up for.
    /// Ticks half a minute apart and more may be up to half a minute late, to come together with those of other timers.
    virtual TimerId every(std::chrono::milliseconds period, Work work) = 0;
    /// Once it has returned on the main thread the timer's work does not run any more. Unknown ids are ignored.
    virtual void cancel(TimerId timer) = 0;
};

} // namespace quillorn
