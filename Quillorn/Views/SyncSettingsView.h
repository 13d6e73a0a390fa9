#pragma once

#include "Services/SyncMonitor.h"

#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace quillorn {

class Calendar;

/// How the store and the others who write to it get along: a line at the foot of the sidebar, and the pane of the
/// settings. Belongs to the main thread.
class SyncSettingsView {
  public:
    static constexpr std::string_view title = "iCloud Sync";
    static constexpr std::string_view titleSymbol = "icloud";
    static constexpr std::string_view statusLabel = "Status";
    static constexpr std::string_view networkLabel = "Network";
    static constexpr std::string_view lastSyncedLabel = "Last Synced";

    /// Referred to, not owned.
    struct Environment {
        SyncMonitor& monitor;
        const Clock& clock;
        const Calendar& calendar;
    };
    explicit SyncSettingsView(const Environment& environment) : m_environment(environment) {}

    [[nodiscard]] Observation observe(std::function<void()> handler) {
        return m_environment.monitor.observe(std::move(handler));
    }

    std::string word() const { return m_environment.monitor.status().word(); }
    std::string_view symbol() const { return m_environment.monitor.status().symbol(); }
    /// "Connected" or "Offline".
    std::string_view network() const { return m_environment.monitor.isNetworkAvailable() ? "Connected" : "Offline"; }
    std::optional<std::string> lastSynced() const;
    /// Of the sidebar: "Last synced 5 minutes ago".
    std::optional<std::string> lastSyncedAgo() const;

  private:
    Environment m_environment;
};

} // namespace quillorn
