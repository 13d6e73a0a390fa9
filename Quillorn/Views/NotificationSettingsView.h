#pragma once

#include "Platform/LocalNotifications.h"
#include "Views/SettingsPane.h"

#include <cstdint>
#include <functional>
#include <string_view>

namespace quillorn {

/// Where the user lets Quillorn remind of due tasks, and chooses when. Belongs to the main thread.
class NotificationSettingsView : public SettingsPane {
  public:
    static constexpr std::string_view enabledTitle = "Notifications Enabled";
    static constexpr std::string_view enabledSymbol = "checkmark.circle.fill";
    static constexpr std::string_view enableButton = "Enable Notifications";
    static constexpr std::string_view disabledTitle = "Notifications Disabled";
    static constexpr std::string_view disabledText = "To enable notifications, please go to System Settings.";
    static constexpr std::string_view openSettingsButton = "Open System Settings";
    static constexpr std::string_view systemSettingsAddress =
        "x-apple.systempreferences:com.apple.preference.notifications";
    static constexpr std::string_view toggleLabel = "Due date reminders";
    static constexpr std::string_view timeLabel = "Notification Time";
    static constexpr std::string_view aboutTitle = "About";
    static constexpr std::string_view aboutText =
        "Notifications will remind you about tasks on their due date at your chosen time.";

    /// `refreshAll` makes all notifications anew, of what the settings say.
    NotificationSettingsView(LocalNotifications& notifications, std::function<void()> refreshAll,
                             SettingsStore& settings, MainQueue& queue);

    enum class Permission { granted, canBeAskedFor, denied };
    Permission permission() const;
    void enable();

    // Setters throw std::runtime_error where a choice can't be kept.
    bool isOn() const;
    void setOn(bool isOn);
    std::int64_t hour() const;
    std::int64_t minute() const;
    void setTime(std::int64_t hour, std::int64_t minute);

  private:
    LocalNotifications& m_notifications;
    std::function<void()> m_refreshAll;
    Observation m_authorization;
};

} // namespace quillorn
