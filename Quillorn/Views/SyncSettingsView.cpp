#include "Views/SyncSettingsView.h"

#include "Models/Formatters.h"
#include "Platform/Calendar.h"
#include "Platform/Clock.h"

namespace quillorn {

std::optional<std::string> SyncSettingsView::lastSynced() const {
    const auto date = m_environment.monitor.lastSyncDate();
    return date ? std::optional(m_environment.calendar.abbreviatedDateAndTime(*date)) : std::nullopt;
}

std::optional<std::string> SyncSettingsView::lastSyncedAgo() const {
    const auto date = m_environment.monitor.lastSyncDate();
    if (!date)
        return std::nullopt;
    return "Last synced " + relativeTime(*date, m_environment.clock.now()) + " ago";
}

} // namespace quillorn
