#pragma once

#include <functional>
#include <thread>

namespace quillorn {

/// Turns SIGINT and SIGTERM into a call. To be made before any other thread, since it blocks the signals for the
/// threads that come after; one at a time.
class TerminationSignals {
  public:
    /// `onSignal` runs on a thread of its own, once for each signal.
    explicit TerminationSignals(std::function<void(int signal)> onSignal);
    ~TerminationSignals();
    TerminationSignals(const TerminationSignals&) = delete;
    TerminationSignals& operator=(const TerminationSignals&) = delete;

  private:
    std::thread m_waiter;
};

} // namespace quillorn
