#include "App/AppSession.h"

#include "App/MachineServices.h"
#include "App/NotificationTurn.h"
#include "App/TimeJumps.h"
#include "Models/Settings.h"
#include "Platform/Bus.h"
#include "Platform/DesktopNotifications.h"
#include "Platform/NetworkPath.h"

#include <utility>

namespace quillorn {

/// The buses of the user's login and of the machine, and what comes by them. Buses that are missing are no fault.
struct AppSession::Machine {
    Machine(MainQueue& queue, const Clock& clock, Calendar& calendar, const Paths& paths, SystemLog& log)
        : turn(paths, log),
          sessionBus(connectBus(BusKind::session, queue, nullptr)),
          systemBus(connectBus(BusKind::system, queue, nullptr)),
          wakeSignals(systemWakeSignals(queue, *systemBus), queue, calendar),
          network(systemNetworkPath(queue)),
          notifications(*sessionBus, clock, queue, wakeSignals, log, [this] { return turn.take(); }),
          turnEnds(notifications.observeAuthorization([this] {
              if (notifications.authorization() != NotificationAuthorization::authorized)
                  turn.giveBack();
          })) {}

    NotificationTurn turn;
    std::unique_ptr<Bus> sessionBus, systemBus;
    TimeJumps wakeSignals;
    std::unique_ptr<NetworkPath> network;
    DesktopNotifications notifications;
    Observation turnEnds;
    MachineSignals signals{notifications, wakeSignals, *network};
};

AppSession::AppSession(MainQueue& mainQueue, SystemLog& log, const ProcessInfo& process,
                       QuillornApp::Schedules schedules, std::string version, std::unique_ptr<Paths> paths)
    : m_text(currentLocale()),
      m_calendar(currentTimeZone(), currentLocale()),
      m_paths(std::move(paths)),
      m_settings(settingsFile(*m_paths), log),
      m_machine(schedules == QuillornApp::Schedules::run
                    ? std::make_unique<Machine>(mainQueue, m_clock, m_calendar, *m_paths, log)
                    : nullptr),
      m_app(std::make_unique<QuillornApp>(AppEnvironment{m_clock, m_random, log, m_notifications, mainQueue, m_settings,
                                                         *m_paths, m_text, m_calendar, std::move(version),
                                                         m_machine ? &m_machine->signals : nullptr},
                                          process, QuillornApp::ServerStart::byCaller, schedules)) {}

AppSession::~AppSession() = default;

Bus* AppSession::sessionBus() {
    return m_machine ? m_machine->sessionBus.get() : nullptr;
}

const MachineSignals* AppSession::machine() const {
    return m_machine ? &m_machine->signals : nullptr;
}

} // namespace quillorn
