#pragma once

#include "App/QuillornApp.h"
#include "Platform/Calendar.h"
#include "Platform/Clock.h"
#include "Platform/Crypto.h"
#include "Platform/NotificationCenter.h"
#include "Platform/Paths.h"
#include "Platform/RunLoop.h"
#include "Platform/SettingsStore.h"
#include "Platform/SystemLog.h"
#include "Platform/Text.h"

#include <memory>

namespace quillorn {

/// The user's application, as a command runs it: all that QuillornApp needs, in the order in which it has to live.
class Session {
  public:
    /// Throws what QuillornApp throws.
    explicit Session(const ProcessInfo& process, QuillornApp::Schedules schedules = QuillornApp::Schedules::rest);

    QuillornApp& app() { return *m_app; }
    RunLoop& mainQueue() { return m_mainQueue; }
    FileSettings& settings() { return m_settings; }
    const Clock& clock() const { return m_clock; }

    /// Whether the user's store could not be opened; says so on standard error.
    bool hasFailed() const;

  private:
    StandardErrorLog m_log;
    RunLoop m_mainQueue{m_log};
    SystemClock m_clock;
    SystemRandom m_random;
    NotificationCenter m_notifications;
    Text m_text;
    Calendar m_calendar;
    std::unique_ptr<Paths> m_paths;
    FileSettings m_settings;
    std::unique_ptr<QuillornApp> m_app;
};

} // namespace quillorn
