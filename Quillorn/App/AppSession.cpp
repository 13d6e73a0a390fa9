#include "App/AppSession.h"

#include "Models/Settings.h"

#include <utility>

namespace quillorn {

AppSession::AppSession(MainQueue& mainQueue, SystemLog& log, const ProcessInfo& process,
                       QuillornApp::Schedules schedules, std::string version)
    : m_text(currentLocale()),
      m_calendar(currentTimeZone(), currentLocale()),
      m_paths(systemPaths()),
      m_settings(settingsFile(*m_paths), log),
      m_app(std::make_unique<QuillornApp>(AppEnvironment{m_clock, m_random, log, m_notifications, mainQueue, m_settings,
                                                         *m_paths, m_text, m_calendar, std::move(version)},
                                          process, QuillornApp::ServerStart::byCaller, schedules)) {}

} // namespace quillorn
