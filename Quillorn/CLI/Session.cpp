#include "CLI/Session.h"

#include "Platform/Terminal.h"

#include <cstdio>
#include <fmt/core.h>

namespace quillorn {

Session::Session(const ProcessInfo& process, QuillornApp::Schedules schedules)
    : m_world(m_mainQueue, m_log, process, schedules, QUILLORN_VERSION) {}

bool Session::hasFailed() {
    if (app().runMode() != RunMode::fallback)
        return false;
    fmt::print(stderr, "\n{}", textFor(stderr, app().storeRecovery().text(), LineEnds::kept));
    return true;
}

} // namespace quillorn
