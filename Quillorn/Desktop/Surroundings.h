#pragma once

#include "App/AppSession.h"
#include "App/BusServices.h"
#include "Desktop/TrayItem.h"
#include "Platform/PortalShortcut.h"

#include <optional>

namespace quillorn {

/// What stands around the window on the user's desktop: the item in the tray while there is one, the key by which a
/// task is added everywhere, and what other programs call.
class Surroundings {
  public:
    /// The session must outlive it.
    Surroundings(AppSession& session, MainQueue& queue, TrayView::Actions actions);
    Surroundings(const Surroundings&) = delete;
    Surroundings& operator=(const Surroundings&) = delete;

    GlobalShortcut& shortcut() { return m_shortcut; }
    /// Whether the program goes on when its window is closed: as the user wants it, where the tray leads back to it.
    bool keepRunning() const;

  private:
    void hostCameOrWent(bool isPresent);
    void settingsChanged();
    void shortcutRefused();

    AppSession& m_session;
    const TrayView::Actions m_actions;
    std::unique_ptr<BusServices> m_busServices;
    std::optional<TrayItem> m_tray;
    PortalShortcut m_shortcut;
    Observation m_host;
    Observation m_settings;
};

} // namespace quillorn
