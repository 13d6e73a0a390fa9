#pragma once

#include "Platform/MainQueue.h"

#include <functional>
#include <memory>
#include <optional>

namespace quillorn {

class SystemLog;

/// The main queue of a program without a toolkit: run() works on the calling thread until stop(). Where a toolkit has
/// the thread, that calls runFor() instead. What work throws is logged. Work that is left at the end is dropped.
class RunLoop final : public MainQueue {
  public:
    /// `wake` is called, on whatever thread, when there may be something to do earlier than was known. It must not call
    /// the loop.
    explicit RunLoop(SystemLog& log, std::function<void()> wake = nullptr);
    ~RunLoop() override;

    void run();
    /// Does what is there to do, but begins nothing after `slice`; says how long it is until there is more, or nothing
    /// when only a call of `wake` can tell.
    std::optional<std::chrono::milliseconds> runFor(std::chrono::milliseconds slice);
    /// Lets run() return after the work at hand, or at once when it has not begun yet; safe from any thread.
    void stop();

    void post(Work work) override;
    TimerId after(std::chrono::milliseconds delay, Work work) override;
    TimerId every(std::chrono::milliseconds period, Work work) override;
    void cancel(TimerId timer) override;

  private:
    struct State;
    std::unique_ptr<State> m_state;
};

} // namespace quillorn
