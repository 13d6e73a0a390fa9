#pragma once

#include "Platform/FileDescriptor.h"

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <thread>

namespace quillorn {

class MainQueue;

/// Tells the main queue when a file descriptor is ready. A thread of its own waits, so that any main queue will do,
/// a desktop toolkit's as well. Belongs to the main thread; the queue must outlive it.
class DescriptorWatch {
  public:
    using Moment = std::chrono::steady_clock::time_point;

    struct Wait {
        /// Must stay open until the next wait or the end of the watch.
        int descriptor = -1;
        /// Of poll(): POLLIN, POLLOUT.
        short events = 0;
        /// When to tell in any case.
        std::optional<Moment> until{};

        friend bool operator==(const Wait&, const Wait&) = default;
    };

    /// `ready` runs on the main queue; it may also come once without need. Throws std::system_error.
    DescriptorWatch(MainQueue& queue, std::function<void()> ready);
    ~DescriptorWatch();
    DescriptorWatch(const DescriptorWatch&) = delete;
    DescriptorWatch& operator=(const DescriptorWatch&) = delete;

    /// Waits until `wait` is met, tells it once, and then rests until the next call. A wait that is still going on
    /// ends untold.
    void waitFor(const Wait& wait);

  private:
    struct State;
    std::shared_ptr<State> m_state;
    std::thread m_thread;
};

} // namespace quillorn
