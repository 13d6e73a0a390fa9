#include "App/BusServices.h"

#include "App/AppSession.h"
#include "App/MachineServices.h"

namespace quillorn {

std::unique_ptr<BusServices> BusServices::of(AppSession& session) {
    const bool isUsers = session.app().runMode() == RunMode::normal && session.sessionBus() != nullptr;
    return isUsers ? std::unique_ptr<BusServices>(new BusServices(session)) : nullptr;
}

BusServices::BusServices(AppSession& session)
    : m_sync(*session.sessionBus(), RemindersBusService::objectPath, session.app().machineServices()->syncMonitor()),
      m_reminders(*session.sessionBus(), session.app().reminderIntents(), session.calendar()) {}

} // namespace quillorn
