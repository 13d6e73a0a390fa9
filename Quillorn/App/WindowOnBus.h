#pragma once

#include "Platform/Bus.h"
#include "Platform/Task.h"

namespace quillorn {

class NotificationService;

/// The window, as other programs find it on the session bus.
namespace windowbus {
inline constexpr auto name = "com.quillorn.Desktop";
inline constexpr auto path = "/com/quillorn/Desktop";
inline constexpr auto interface = "org.freedesktop.Application";
// What it is called with beside: the token by which it may come to the front, by its name and by that of old.
inline constexpr auto activationToken = "activation-token";
inline constexpr auto startupId = "desktop-startup-id";
} // namespace windowbus

/// Lets the notifications of a program without a window open their tasks in the one that runs, or that the bus starts
/// where it is installed. Both must outlive it.
class NotificationsIntoWindow {
  public:
    NotificationsIntoWindow(Bus& sessionBus, NotificationService& notifications);

  private:
    void windowCameOrWent(bool isPresent);
    Task<> lookWhetherItCanStart();
    void setReachable(bool isReachable);

    Bus& m_bus;
    NotificationService& m_notifications;
    TaskScope m_looks;
    Observation m_presence;
};

} // namespace quillorn
