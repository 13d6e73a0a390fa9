#include "Views/SettingsView.h"

#include "Models/Settings.h"

#include <algorithm>

namespace quillorn {

std::optional<std::size_t> SettingsView::selectedTab() const {
    const std::string chosen = Settings(settings()).text(setting("settingsTab"));
    const auto* const found = std::ranges::find(tabs, chosen, &Tab::tag);
    return found == tabs.end() ? std::nullopt : std::optional(static_cast<std::size_t>(found - tabs.begin()));
}

void SettingsView::select(std::string_view tag) {
    keep(setting("settingsTab"), std::string(tag));
}

} // namespace quillorn
