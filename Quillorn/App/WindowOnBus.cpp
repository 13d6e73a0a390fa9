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
        m_notifications.onOpen = [this](const UUID& task, const std::string& token) {
            const BusValue::List addresses{"quillorn://task/" + task.string()};
            BusValue::Dictionary platformData;
            if (!token.empty())
                platformData = {{windowbus::activationToken, token}, {windowbus::startupId, token}};
            m_bus.send({windowbus::name,
                        windowbus::path,
                        windowbus::interface,
                        "Open",
                        {"asa{sv}", {BusValue(addresses), std::move(platformData)}}});
        };
    else
        m_notifications.onOpen = nullptr;
    m_notifications.refreshAll(); // those that wait are made with it, or without
}

} // namespace quillorn
