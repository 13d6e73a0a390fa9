#include "App/MachineServices.h"

#include "Platform/Calendar.h"
#include "Platform/WakeSignals.h"
#include "Store/MainContext.h"

#include <utility>

namespace quillorn {

MachineServices::MachineServices(const MachineSignals& machine, const NotificationEnvironment& environment,
                                 MainContext& context, Background& background)
    : m_dayChangeObserver(environment.clock, environment.calendar, environment.mainQueue, machine.wakeSignals),
      m_syncMonitor(machine.network, environment.clock, environment.mainQueue),
      m_notificationService(environment, context, background),
      m_othersChanges(context.observe([this](const ChangeSet& changes) {
          if (changes.includesOthers())
              m_syncMonitor.handleRemoteChange();
      })),
      m_timeZone(environment.calendar.timeZone()),
      m_jumps(machine.wakeSignals.observe([this, &calendar = environment.calendar] {
          if (std::exchange(m_timeZone, calendar.timeZone()) != calendar.timeZone())
              m_notificationService.refreshAll(); // their moments are times of the wall's clock
      })) {}

} // namespace quillorn
