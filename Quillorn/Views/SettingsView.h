#pragma once

#include "Views/SettingsPane.h"

#include <array>
#include <optional>
#include <string>
#include <string_view>

namespace quillorn {

/// The settings window: its tabs, and which of them it shows. Belongs to the main thread.
class SettingsView : public SettingsPane {
  public:
    struct Tab {
        std::string_view tag, label, symbol;
    };
    static constexpr std::array<Tab, 7> tabs = {{{"general", "General", "gear"},
                                                 {"api", "API", "network"},
                                                 {"sync", "Sync", "icloud"},
                                                 {"backup", "Backup", "externaldrive.badge.timemachine"},
                                                 {"notifications", "Notifications", "bell"},
                                                 {"ai", "AI", "sparkles"},
                                                 {"reminders", "Reminders", "checklist"}}};

    SettingsView(SettingsStore& settings, MainQueue& queue) : SettingsPane(settings, queue) {}

    /// Its place among the tabs; absent where none is chosen.
    std::optional<std::size_t> selectedTab() const;
    void select(std::string_view tag);
};

} // namespace quillorn
