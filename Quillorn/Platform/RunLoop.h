#pragma once

#include "Platform/MainQueue.h"

#include <memory>

namespace quillorn {

class SystemLog;

/// The main queue of a program without a toolkit: run() works on the calling thread until stop(). What work throws is
/// logged. Work that is left at the end is dropped.
class RunLoop final : public MainQueue {
  public:
    explicit RunLoop(SystemLog& log);
    ~RunLoop() override;

    void run();
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
