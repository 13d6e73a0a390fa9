#include "CLI/Session.h"

#include "Platform/Terminal.h"

#include <chrono>
#include <cstdio>
#include <fmt/core.h>
#include <stdexcept>

namespace quillorn {

Session::Session(const ProcessInfo& process, QuillornApp::Schedules schedules)
    : m_world(m_mainQueue, m_log, process, schedules, QUILLORN_VERSION) {}

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
