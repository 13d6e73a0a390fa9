#include "CLI/NotificationCheck.h"

#include "Models/Settings.h"
#include "Platform/DesktopNotifications.h"
#include "Platform/RunTask.h"

namespace quillorn {

std::string whyNoNotifications(SettingsStore& settings, SystemLog& log) {
    if (!Settings(settings).boolean(setting("notificationsEnabled")))
        return "the setting notificationsEnabled is off";
    RunLoop queue(log);
    const auto bus = connectBus(BusKind::session, queue, nullptr);
    constexpr std::chrono::seconds patience{2};
    return runTaskFor(queue, patience, whyNotShown(*bus)).value_or("the desktop does not answer");
}

} // namespace quillorn
