#pragma once

#include "Reminders/RemindersBusService.h"
#include "Services/SyncBusService.h"

#include <memory>

namespace quillorn {

class AppSession;

/// What other programs find on the session bus of one that stays. Of several on the user's store the first has the
/// name, and the next takes over when that one ends.
class BusServices {
  public:
    /// Null for a store that is not the user's: what is shown to play with is not for other programs. Where there is no
    /// session bus nobody could call; one that comes later is found. The session must outlive it.
    static std::unique_ptr<BusServices> of(AppSession& session);

  private:
    explicit BusServices(AppSession& session);

    SyncBusService m_sync;
    RemindersBusService m_reminders;
};

} // namespace quillorn
