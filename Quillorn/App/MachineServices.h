#pragma once

#include "Services/DayChangeObserver.h"
#include "Services/NotificationService.h"
#include "Services/SyncMonitor.h"

namespace quillorn {

/// What goes on at the machine, for programs that stay.
struct MachineSignals {
    LocalNotifications& notifications;
    WakeSignals& wakeSignals;
    NetworkPath& network;
};

/// What follows the machine and the store as long as a program stays: the day, the others who write to the store, and
/// the notifications of due tasks.
class MachineServices {
  public:
    MachineServices(const MachineSignals& machine, const NotificationEnvironment& environment, MainContext& context,
                    Background& background);

    DayChangeObserver& dayChangeObserver() { return m_dayChangeObserver; }
    SyncMonitor& syncMonitor() { return m_syncMonitor; }
    NotificationService& notificationService() { return m_notificationService; }

  private:
    DayChangeObserver m_dayChangeObserver;
    SyncMonitor m_syncMonitor;
    NotificationService m_notificationService;
    Observation m_othersChanges;
    std::string m_timeZone;
    Observation m_jumps;
};

} // namespace quillorn
