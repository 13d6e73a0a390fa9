#pragma once

#include "App/AppSession.h"
#include "Platform/RunLoop.h"
#include "Platform/SystemLog.h"

namespace quillorn {

/// The user's application, as a command runs it: with a queue that runs when the command says so.
class Session {
  public:
    /// Throws what QuillornApp throws.
    explicit Session(const ProcessInfo& process, QuillornApp::Schedules schedules = QuillornApp::Schedules::rest);
    /// Lets a command wait for what it has set under way.
    ~Session();
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    QuillornApp& app() { return m_world.app(); }
    RunLoop& mainQueue() { return m_mainQueue; }
    FileSettings& settings() { return m_world.settings(); }
    const Clock& clock() const { return m_world.clock(); }
    const Calendar& calendar() const { return m_world.calendar(); }
    const Text& text() const { return m_world.text(); }
    AppSession& world() { return m_world; }

    /// Lets the main context save what it has, however long others write. Throws std::runtime_error when it can't.
    void saveChanges();

    /// Whether the user's store could not be opened; says so on standard error.
    bool hasFailed();

  private:
    void finishPushes();

    const QuillornApp::Schedules m_schedules;
    StandardErrorLog m_log;
    RunLoop m_mainQueue{m_log};
    AppSession m_world;
};

} // namespace quillorn
