#include "Views/DesktopSettingsView.h"

#include "Models/Settings.h"
#include "Platform/Background.h"
#include "Platform/GlobalShortcut.h"

#include <fmt/core.h>
#include <utility>

namespace quillorn {

namespace {

struct LoginState {
    bool isOn = false;
    std::string problem{};
};

/// Changes what stands on the disk, where something is wanted, and tells what stands there then.
LoginState changed(LoginItem& item, std::optional<bool> wanted) {
    LoginState state;
    try {
        if (wanted)
            item.set(*wanted);
    } catch (const std::exception& error) {
        state.problem = error.what();
    }
    try {
        state.isOn = item.state() == LoginItem::State::on;
    } catch (const std::exception& error) {
        state.problem = error.what();
    }
    return state;
}

} // namespace

DesktopSettingsView::DesktopSettingsView(const Environment& environment)
    : SettingsPane(environment.settings, environment.queue),
      m_environment(environment) {
    if (m_environment.shortcut != nullptr)
        m_shortcutChanges = m_environment.shortcut->observe([this] { tell(); });
}

void DesktopSettingsView::appear() {
    startLooking();
}

void DesktopSettingsView::setStartsAtLogin(bool starts) {
    m_wanted = starts;
    startLooking();
}

void DesktopSettingsView::startLooking() {
    if (m_looks.isIdle())
        m_looks.start(look());
}

Task<> DesktopSettingsView::look() {
    do {
        const auto wanted = std::exchange(m_wanted, std::nullopt);
        const auto work = [item = m_environment.loginItem, wanted](const auto&) { return changed(*item, wanted); };
        const LoginState state = co_await m_environment.background.run(work);
        m_startsAtLogin = state.isOn;
        m_loginProblem = state.problem;
    } while (m_wanted);
    tell();
}

bool DesktopSettingsView::keepsRunning() const {
    return Settings(settings()).boolean(setting("trayKeepsRunning"));
}
void DesktopSettingsView::setKeepsRunning(bool keeps) {
    keep(setting("trayKeepsRunning"), keeps);
}

bool DesktopSettingsView::hasShortcut() const {
    return m_environment.shortcut != nullptr && m_environment.shortcut->isAvailable();
}
bool DesktopSettingsView::wantsShortcut() const {
    return Settings(settings()).boolean(setting("quickAddShortcut"));
}
void DesktopSettingsView::setWantsShortcut(bool wants) {
    keep(setting("quickAddShortcut"), wants);
}
std::string DesktopSettingsView::shortcutHelp() const {
    if (!hasShortcut())
        return std::string(shortcutByHand);
    const std::string& trigger = m_environment.shortcut->trigger();
    return trigger.empty() ? "The desktop asks for the key." : fmt::format("The key is {}.", trigger);
}

} // namespace quillorn
