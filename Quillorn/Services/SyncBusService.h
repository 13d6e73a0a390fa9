#pragma once

#include "Platform/Bus.h"
#include "Platform/Date.h"
#include "Platform/Task.h"

#include <optional>
#include <string>

namespace quillorn {

class SyncMonitor;

/// What a SyncMonitor shows, as others are told.
struct SyncState {
    /// For programs: "idle", "syncing", "synced", "offline" or "error".
    std::string status;
    /// For people.
    std::string statusText;
    bool networkAvailable = true;
    std::optional<Date> lastSyncDate{};

    static SyncState of(const SyncMonitor& monitor);
};

/// Tells other programs, as com.quillorn.Sync1 on the object, what the monitor shows. Belongs to the main thread.
class SyncBusService {
  public:
    static constexpr const char* interfaceName = "com.quillorn.Sync1";

    /// Both have to outlive this object.
    SyncBusService(Bus& bus, std::string objectPath, const SyncMonitor& monitor);

  private:
    Observation m_object;
};

/// What the program of that name tells; absent where none runs, and none is started for it.
Task<std::optional<SyncState>> askForSyncState(Bus& bus, std::string service, std::string objectPath);

} // namespace quillorn
