#include "Platform/Bus.h"
#include "Platform/FileDescriptor.h"
#include "Platform/Linux/DescriptorWatch.h"
#include "Platform/WakeSignals.h"

#include <cerrno>
#include <ctime>
#include <poll.h>
#include <sys/timerfd.h>
#include <system_error>

namespace quillorn {

namespace {

/// Far enough that it is never reached, and may be.
constexpr std::time_t tenYears = 10L * 365 * 24 * 60 * 60;

/// A timer of the wall's clock that is told when that clock is set, which also happens on waking; and logind, which
/// knows of sleep in any case.
class SystemWakeSignals final : public WakeSignals {
  public:
    SystemWakeSignals(MainQueue& queue, Bus& systemBus)
        : m_timer(::timerfd_create(CLOCK_REALTIME, TFD_NONBLOCK | TFD_CLOEXEC)),
          m_watch(queue, [this] { clockWasSet(); }) {
        if (!m_timer)
            throw std::system_error(errno, std::generic_category(), "timerfd_create");
        wait();
        m_sleep = systemBus.observeSignal(
            {"org.freedesktop.login1", "/org/freedesktop/login1", "org.freedesktop.login1.Manager", "PrepareForSleep"},
            [this](const BusSignal& signal) {
                const auto& values = signal.message.values;
                const bool* isBefore = values.size() == 1 ? values[0].asBool() : nullptr;
                if (isBefore != nullptr && !*isBefore)
                    m_observers.tell();
            });
    }

    Observation observe(std::function<void()> handler) override { return m_observers.add(std::move(handler)); }

  private:
    void wait() {
        itimerspec time{};
        time.it_value.tv_sec = std::time(nullptr) + tenYears;
        ::timerfd_settime(m_timer.number(), TFD_TIMER_ABSTIME | TFD_TIMER_CANCEL_ON_SET, &time, nullptr);
        m_watch.waitFor({m_timer.number(), POLLIN});
    }

    void clockWasSet() {
        wait();
        m_observers.tell();
    }

    FileDescriptor m_timer;
    Observers<> m_observers;
    DescriptorWatch m_watch;
    Observation m_sleep;
};

} // namespace

std::unique_ptr<WakeSignals> systemWakeSignals(MainQueue& queue, Bus& systemBus) {
    return std::make_unique<SystemWakeSignals>(queue, systemBus);
}

} // namespace quillorn
