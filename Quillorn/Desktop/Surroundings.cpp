#include "Desktop/Surroundings.h"

#include "Models/Settings.h"

namespace quillorn {

Surroundings::Surroundings(AppSession& session, MainQueue& queue, TrayView::Actions actions)
    : m_session(session),
      m_actions(std::move(actions)),
      m_busServices(BusServices::of(session)),
      m_shortcut(*session.sessionBus(), {"quick-add", "Add a task", "CTRL+ALT+a"}),
      m_host(session.sessionBus()->observeService("org.kde.StatusNotifierWatcher",
                                                  [this](bool isPresent) { hostCameOrWent(isPresent); })),
      m_settings(session.settings().observe(queue, [this] { settingsChanged(); })) {
    m_shortcut.onActivated = m_actions.quickAdd;
    m_shortcut.onRefused = [this] { shortcutRefused(); };
    settingsChanged();
}

bool Surroundings::keepRunning() const {
    return m_tray && Settings(m_session.settings()).boolean(setting("trayKeepsRunning"));
}

void Surroundings::hostCameOrWent(bool isPresent) {
    m_tray.reset();
    if (!isPresent)
        return;
    QuillornApp& app = m_session.app();
    m_tray.emplace(TimerToolbarView::Environment{app.mainStore(), app.timerService(), m_session.clock(),
                                                 m_session.calendar(), m_session.text()},
                   m_actions);
}

void Surroundings::settingsChanged() {
    m_shortcut.setWanted(Settings(m_session.settings()).boolean(setting("quickAddShortcut")));
}

/// The user is not asked again until the setting says so.
void Surroundings::shortcutRefused() {
    try {
        Settings(m_session.settings()).set(setting("quickAddShortcut"), false);
    } catch (const std::exception& error) {
        m_actions.fail(error.what());
    }
}

} // namespace quillorn
