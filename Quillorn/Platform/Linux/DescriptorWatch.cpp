#include "Platform/Linux/DescriptorWatch.h"

#include "Platform/MainQueue.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstdint>
#include <limits>
#include <mutex>
#include <poll.h>
#include <sys/eventfd.h>
#include <system_error>

namespace quillorn {

namespace {

int millisecondsUntil(const std::optional<DescriptorWatch::Moment>& moment) {
    if (!moment)
        return -1;
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(*moment - std::chrono::steady_clock::now());
    return static_cast<int>(std::clamp<std::int64_t>(left.count(), 0, std::numeric_limits<int>::max()));
}

/// Signals are for the threads that expect them.
class BlockedSignals {
  public:
    BlockedSignals() {
        sigset_t all;
        ::sigfillset(&all);
        ::pthread_sigmask(SIG_SETMASK, &all, &m_before);
    }
    ~BlockedSignals() { ::pthread_sigmask(SIG_SETMASK, &m_before, nullptr); }
    BlockedSignals(const BlockedSignals&) = delete;
    BlockedSignals& operator=(const BlockedSignals&) = delete;

  private:
    sigset_t m_before{};
};

} // namespace

struct DescriptorWatch::State {
    State(MainQueue& mainQueue, std::function<void()> work)
        : queue(mainQueue),
          ready(std::move(work)),
          changed(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {
        if (!changed)
            throw std::system_error(errno, std::generic_category(), "eventfd");
    }

    /// Lets the thread look at what has been changed.
    void wake() const {
        // Fails only where the counter is full, when the thread will wake anyhow.
        (void)::eventfd_write(changed.number(), 1);
    }

    /// What there is to wait for; absent at the end.
    std::optional<Wait> currentWait() {
        const std::lock_guard lock(mutex);
        return ended ? std::nullopt : std::optional(wait);
    }

    void tell(const Wait& met, const std::weak_ptr<State>& self) {
        {
            const std::lock_guard lock(mutex);
            if (ended || wait != met)
                return;
            wait = {};
        }
        queue.post([self] {
            if (const auto state = self.lock())
                state->ready();
        });
    }

    MainQueue& queue;
    const std::function<void()> ready;
    FileDescriptor changed;
    std::mutex mutex;
    Wait wait;
    bool ended = false;
};

DescriptorWatch::DescriptorWatch(MainQueue& queue, std::function<void()> ready)
    : m_state(std::make_shared<State>(queue, std::move(ready))) {
    const BlockedSignals inherited;
    m_thread = std::thread([self = std::weak_ptr(m_state), &state = *m_state] {
        while (const std::optional<Wait> wait = state.currentWait()) {
            std::array<pollfd, 2> polled{{{state.changed.number(), POLLIN, 0}, {wait->descriptor, wait->events, 0}}};
            const int count = ::poll(polled.data(), polled.size(), millisecondsUntil(wait->until));
            eventfd_t ignored = 0;
            if (polled[0].revents != 0)
                (void)::eventfd_read(state.changed.number(), &ignored);
            if ((count == 0 && wait->until) || (count > 0 && polled[1].revents != 0))
                state.tell(*wait, self);
        }
    });
}

DescriptorWatch::~DescriptorWatch() {
    {
        const std::lock_guard lock(m_state->mutex);
        m_state->ended = true;
    }
    m_state->wake();
    m_thread.join();
}

void DescriptorWatch::waitFor(const Wait& wait) {
    {
        const std::lock_guard lock(m_state->mutex);
        if (m_state->wait == wait)
            return;
        m_state->wait = wait;
    }
    m_state->wake();
}

} // namespace quillorn
