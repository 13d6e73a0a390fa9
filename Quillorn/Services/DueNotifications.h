#pragma once

#include "Platform/LocalNotifications.h"
#include "Platform/UUID.h"

#include <chrono>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quillorn {

class Calendar;
class ModelContainer;

/// Every name of a notification of a due task begins with it.
inline constexpr std::string_view dueNotificationPrefix = "quillorn.task-due.";

/// When on its day a task without a time of its own is due.
struct NotificationTime {
    std::int64_t hour = 8;
    std::int64_t minute = 0;

    friend bool operator==(const NotificationTime&, const NotificationTime&) = default;
};

/// What a notification says of a task.
struct DueTask {
    UUID id{};
    std::string title{};
    Date dueDate{};
    bool dueHasTime = false;
};

std::string dueNotificationIdentifier(const UUID& task);

/// The notification of the task's due date; absent when its moment is not ahead.
std::optional<NotificationRequest> dueNotification(const DueTask& task, const NotificationTime& time,
                                                   const Calendar& calendar, Date now);

/// Those of all open tasks of the store, in a constant number of statements. Throws StoreError.
std::vector<NotificationRequest> dueNotifications(ModelContainer& container, const NotificationTime& time,
                                                  const Calendar& calendar, Date now);

} // namespace quillorn
