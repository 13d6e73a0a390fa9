#include "Platform/TerminationSignals.h"

#include <csignal>
#include <pthread.h>

namespace quillorn {

namespace {

/// Wakes the waiting thread at the end; nobody else sends it.
constexpr int wakeUp = SIGUSR2;

sigset_t waitedSignals() {
    sigset_t signals;
    sigemptyset(&signals);
    for (const int signal : {SIGINT, SIGTERM, wakeUp})
        sigaddset(&signals, signal);
    return signals;
}

} // namespace

TerminationSignals::TerminationSignals(std::function<void(int signal)> onSignal) {
    const sigset_t signals = waitedSignals();
    pthread_sigmask(SIG_BLOCK, &signals, nullptr);
    m_waiter = std::thread([signals, onSignal = std::move(onSignal)] {
        for (int signal = 0; sigwait(&signals, &signal) == 0 && signal != wakeUp;)
            onSignal(signal);
    });
}

TerminationSignals::~TerminationSignals() {
    pthread_kill(m_waiter.native_handle(), wakeUp);
    m_waiter.join();
}

} // namespace quillorn
