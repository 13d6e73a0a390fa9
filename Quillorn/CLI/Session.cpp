#include "CLI/Session.h"

#include "Platform/Terminal.h"
#include "Services/ThoughtkegClient.h"

#include <chrono>
#include <cstdio>
#include <fmt/core.h>
#include <stdexcept>

namespace quillorn {

Session::Session(const ProcessInfo& process, QuillornApp::Schedules schedules)
    : m_schedules(schedules),
      m_world(m_mainQueue, m_log, process, schedules, QUILLORN_VERSION) {}

Session::~Session() {
    if (m_schedules != QuillornApp::Schedules::rest)
        return;
    try {
        finishPushes();
    } catch (const std::exception& error) {
        m_log.log(error.what()); // the command has done what it is for
    }
}

/// Completed tasks that are on their way to Thoughtkeg get the time that one push has.
void Session::finishPushes() {
    ThoughtkegClient* client = app().thoughtkegClient();
    if (client == nullptr || client->isIdle())
        return;
    const Observation end = client->observe([this] { m_mainQueue.stop(); });
    bool isLate = false;
    const auto timer = m_mainQueue.after(ThoughtkegClient::timeout, [&] {
        isLate = true;
        m_mainQueue.stop();
    });
    while (!client->isIdle() && !isLate)
        m_mainQueue.run();
    m_mainQueue.cancel(timer);
}

void Session::saveChanges() {
    using namespace std::chrono_literals;
    constexpr auto interval = 20ms;
    auto left = 15s / interval;
    const ModelContext& context = app().mainContext();
    if (!context.hasChanges())
        return;
    const auto timer = m_mainQueue.every(interval, [&] {
        if (!context.hasChanges() || --left == 0)
            m_mainQueue.stop();
    });
    m_mainQueue.run();
    m_mainQueue.cancel(timer);
    if (context.hasChanges())
        throw std::runtime_error("the store could not be written: another program holds it");
}

bool Session::hasFailed() {
    if (app().runMode() != RunMode::fallback)
        return false;
    fmt::print(stderr, "\n{}", textFor(stderr, app().storeRecovery().text(), LineEnds::kept));
    return true;
}

} // namespace quillorn
