#include "Views/NotificationSettingsView.h"

#include "Models/Settings.h"

namespace quillorn {

NotificationSettingsView::NotificationSettingsView(LocalNotifications& notifications, std::function<void()> refreshAll,
                                                   SettingsStore& settings, MainQueue& queue)
    : SettingsPane(settings, queue),
      m_notifications(notifications),
      m_refreshAll(std::move(refreshAll)),
      m_authorization(notifications.observeAuthorization([this] { tell(); })) {}

NotificationSettingsView::Permission NotificationSettingsView::permission() const {
    switch (m_notifications.authorization()) {
    case NotificationAuthorization::authorized:
        return Permission::granted;
    case NotificationAuthorization::denied:
        return Permission::denied;
    case NotificationAuthorization::notDetermined:
        break;
    }
    return Permission::canBeAskedFor;
}

void NotificationSettingsView::enable() {
    m_notifications.requestAuthorization();
}

bool NotificationSettingsView::isOn() const {
    return Settings(settings()).boolean(setting("notificationsEnabled"));
}
void NotificationSettingsView::setOn(bool isOn) {
    keep(setting("notificationsEnabled"), isOn);
    m_refreshAll();
}

std::int64_t NotificationSettingsView::hour() const {
    return Settings(settings()).integer(setting("notificationHour"));
}
std::int64_t NotificationSettingsView::minute() const {
    return Settings(settings()).integer(setting("notificationMinute"));
}
void NotificationSettingsView::setTime(std::int64_t hour, std::int64_t minute) {
    keep(setting("notificationHour"), hour);
    keep(setting("notificationMinute"), minute);
    m_refreshAll();
}

} // namespace quillorn
