#include "App/WindowOnBus.h"

#include "Platform/BusTask.h"
#include "Services/NotificationService.h"

namespace quillorn {

NotificationsIntoWindow::NotificationsIntoWindow(Bus& sessionBus, NotificationService& notifications)
    : m_bus(sessionBus),
      m_notifications(notifications),
      m_presence(m_bus.observeService(windowbus::name, [this](bool isPresent) { windowCameOrWent(isPresent); })) {}

void NotificationsIntoWindow::windowCameOrWent(bool isPresent) {
    m_looks.cancel();
    if (isPresent)
        setReachable(true);
    else
        m_looks.start(lookWhetherItCanStart());
}

Task<> NotificationsIntoWindow::lookWhetherItCanStart() {
    const std::string name = windowbus::name;
    setReachable(co_await canBeStarted(m_bus, name));
}

void NotificationsIntoWindow::setReachable(bool isReachable) {
    if (isReachable == (m_notifications.onOpen != nullptr))
        return;
    if (isReachable)
        m_notifications.onOpen = [this](const UUID& task) {
            const BusValue::List addresses{"quillorn://task/" + task.string()};
            m_bus.send({windowbus::name,
                        windowbus::path,
                        windowbus::interface,
                        "Open",
                        {"asa{sv}", {BusValue(addresses), BusValue::Dictionary{}}}});
        };
    else
        m_notifications.onOpen = nullptr;
    m_notifications.refreshAll(); // those that wait are made with it, or without
}

} // namespace quillorn
