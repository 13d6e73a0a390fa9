#include "CLI/Session.h"

#include "Models/Settings.h"

#include <cstdio>
#include <fmt/core.h>

namespace quillorn {

Session::Session(const ProcessInfo& process, QuillornApp::Schedules schedules)
    : m_text(currentLocale()),
      m_calendar(currentTimeZone(), currentLocale()),
      m_paths(systemPaths()),
      m_settings(settingsFile(*m_paths), m_log),
      m_app(std::make_unique<QuillornApp>(AppEnvironment{m_clock, m_random, m_log, m_notifications, m_mainQueue,
                                                         m_settings, *m_paths, m_text, m_calendar, QUILLORN_VERSION},
                                          process, QuillornApp::ServerStart::byCaller, schedules)) {}

bool Session::hasFailed() const {
    if (m_app->runMode() != RunMode::fallback)
        return false;
    fmt::print(stderr, "\n{}", m_app->storeRecovery().text());
    return true;
}

} // namespace quillorn
