#include "App/MachineServices.h"

#include "Store/MainContext.h"

namespace quillorn {

MachineServices::MachineServices(const MachineSignals& machine, const NotificationEnvironment& environment,
                                 MainContext& context, Background& background)
    : m_dayChangeObserver(environment.clock, environment.calendar, environment.mainQueue, machine.wakeSignals),
      m_syncMonitor(machine.network, environment.clock, environment.mainQueue),
      m_notificationService(environment, context, background),
      m_othersChanges(context.observe([this](const ChangeSet& changes) {
          if (changes.includesOthers())
              m_syncMonitor.handleRemoteChange();
      })) {}

} // namespace quillorn
