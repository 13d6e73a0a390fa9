#pragma once

#include "App/QuillornApp.h"
#include "Platform/Calendar.h"
#include "Platform/Clock.h"
#include "Platform/Crypto.h"
#include "Platform/NotificationCenter.h"
#include "Platform/Paths.h"
#include "Platform/SettingsStore.h"
#include "Platform/Text.h"

#include <memory>
#include <string>

namespace quillorn {

class Bus;

/// The user's application on this machine: all that QuillornApp needs, in the order in which it has to live. The shell
/// hands in its queue and its log, which have to outlive it.
class AppSession {
  public:
    /// Throws what QuillornApp throws.
    AppSession(MainQueue& mainQueue, SystemLog& log, const ProcessInfo& process, QuillornApp::Schedules schedules,
               std::string version, std::unique_ptr<Paths> paths = systemPaths());
    ~AppSession();

    QuillornApp& app() { return *m_app; }
    FileSettings& settings() { return m_settings; }
    NotificationCenter& notifications() { return m_notifications; }
    const Clock& clock() const { return m_clock; }
    const Calendar& calendar() const { return m_calendar; }
    const Text& text() const { return m_text; }
    const Paths& paths() const { return *m_paths; }
    // Of programs that stay; null for commands.
    Bus* sessionBus();
    const MachineSignals* machine() const;

  private:
    struct Machine;

    SystemClock m_clock;
    SystemRandom m_random;
    NotificationCenter m_notifications;
    Text m_text;
    Calendar m_calendar;
    std::unique_ptr<Paths> m_paths;
    FileSettings m_settings;
    std::unique_ptr<Machine> m_machine; // null for commands
    std::unique_ptr<QuillornApp> m_app;
};

} // namespace quillorn
