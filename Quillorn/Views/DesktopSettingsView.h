#pragma once

#include "Platform/LoginItem.h"
#include "Platform/Task.h"
#include "Views/SettingsPane.h"

#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace quillorn {

class Background;
class GlobalShortcut;

/// Where the user chooses how the program stands in the desktop: in the pane of the general settings. Belongs to the
/// main thread.
class DesktopSettingsView : public SettingsPane {
  public:
    static constexpr std::string_view title = "Desktop";
    static constexpr std::string_view titleSymbol = "macwindow";
    static constexpr std::string_view loginLabel = "Start at login";
    static constexpr std::string_view trayLabel = "Keep running in the tray when the window is closed";
    static constexpr std::string_view trayHelp = "Where the desktop has no tray, closing the window ends the program.";
    static constexpr std::string_view shortcutLabel = "Open Quick Add by a key everywhere";
    /// Where the desktop has no such keys.
    static constexpr std::string_view shortcutByHand =
        "This desktop hands out no keys. Bind one of your own to: quillorn-desktop --quick-add";

    /// Without a shortcut there is none to be had. Referred to, but for the login item, which work shares.
    struct Environment {
        SettingsStore& settings;
        MainQueue& queue;
        Background& background;
        std::shared_ptr<LoginItem> loginItem;
        GlobalShortcut* shortcut;
    };
    explicit DesktopSettingsView(const Environment& environment);

    /// The pane has come up: looks at what is there.
    void appear();

    bool startsAtLogin() const { return m_startsAtLogin; }
    /// What is really there shows a moment later.
    void setStartsAtLogin(bool starts);
    /// Why it could not be done; empty where it could.
    const std::string& loginProblem() const { return m_loginProblem; }

    // Setters throw std::runtime_error where a choice can't be kept.
    bool keepsRunning() const;
    void setKeepsRunning(bool keeps);
    bool hasShortcut() const;
    bool wantsShortcut() const;
    void setWantsShortcut(bool wants);
    /// The key, or how to have one.
    std::string shortcutHelp() const;

  private:
    /// One look at a time, with what was wanted last.
    void startLooking();
    Task<> look();

    Environment m_environment;
    bool m_startsAtLogin = false;
    std::string m_loginProblem;
    std::optional<bool> m_wanted; // and not done so far
    TaskScope m_looks;
    Observation m_shortcutChanges;
};

} // namespace quillorn
