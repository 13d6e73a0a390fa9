#pragma once

#include "Platform/Date.h"
#include "Platform/NetworkPath.h"
#include "Platform/Observers.h"
#include "Platform/Task.h"

#include <chrono>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace quillorn {

class Clock;
class MainQueue;

/// Says how the store and the others who write to it get along, for people to see. It moves nothing itself. Belongs to
/// the main thread.
class SyncMonitor {
  public:
    struct SyncStatus {
        enum class Kind { idle, syncing, synced, offline, error };

        Kind kind = Kind::idle;
        /// Of an error.
        std::string text{};

        /// For programs.
        std::string_view name() const;
        /// For people.
        std::string word() const;
        /// The platform's symbol.
        std::string_view symbol() const;

        friend bool operator==(const SyncStatus&, const SyncStatus&) = default;
    };

    /// How long a change is shown to be under way.
    static constexpr std::chrono::milliseconds changeDuration{1000};

    SyncMonitor(NetworkPath& network, const Clock& clock, MainQueue& queue);

    const SyncStatus& status() const { return m_status; }
    /// When the last change by others had come in.
    std::optional<Date> lastSyncDate() const { return m_lastSyncDate; }
    bool isNetworkAvailable() const { return m_isNetworkAvailable; }
    /// Told after each change of the above.
    [[nodiscard]] Observation observe(std::function<void()> handler) { return m_observers.add(std::move(handler)); }

    /// To be called when somebody else has written to the store.
    void handleRemoteChange();

  private:
    void pathWasUpdated(bool isSatisfied);
    Task<> finishChange();
    void setStatus(SyncStatus::Kind kind);

    const Clock& m_clock;
    MainQueue& m_queue;
    SyncStatus m_status;
    std::optional<Date> m_lastSyncDate;
    bool m_isNetworkAvailable = true;
    Observers<> m_observers;
    TaskScope m_changes;
    Observation m_path;
};

} // namespace quillorn
