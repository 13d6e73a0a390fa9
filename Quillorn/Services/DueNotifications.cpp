#include "Services/DueNotifications.h"

#include "Platform/Calendar.h"
#include "Store/ModelContext.h"

#include <algorithm>
#include <utility>

namespace quillorn {

namespace {

/// A day without a time is due within it; days have up to 25 hours.
constexpr std::chrono::hours longestDay{25};

Date momentOf(const DueTask& task, const NotificationTime& time, const Calendar& calendar) {
    using namespace std::chrono;
    if (task.dueHasTime)
        return floor<minutes>(task.dueDate);
    // Callers may name any number.
    const hours hour{std::clamp<std::int64_t>(time.hour, 0, 23)};
    const minutes minute{std::clamp<std::int64_t>(time.minute, 0, 59)};
    return calendar.instant(local_days(calendar.day(task.dueDate)) + hour + minute);
}

} // namespace

std::string dueNotificationIdentifier(const UUID& task) {
    return std::string(dueNotificationPrefix) + task.string();
}

std::optional<NotificationRequest> dueNotification(const DueTask& task, const NotificationTime& time,
                                                   const Calendar& calendar, Date now) {
    const Date moment = momentOf(task, time, calendar);
    if (moment <= now)
        return std::nullopt;
    NotificationRequest request{.identifier = dueNotificationIdentifier(task.id),
                                .title = task.dueHasTime ? "Task Due" : "Task Due Today",
                                .body = task.title,
                                .moment = moment};
    request.userInfo.emplace("taskId", task.id.string());
    return request;
}

std::vector<NotificationRequest> dueNotifications(ModelContainer& container, const NotificationTime& time,
                                                  const Calendar& calendar, Date now) {
    ModelContext context(container);
    const StatementLoan rows = context.statement("SELECT id, title, dueDate, dueHasTime FROM ProjectTask"
                                                 " WHERE completedAt IS NULL AND dueDate > ?");
    rows->bind(1, (now - longestDay).time_since_epoch().count());
    std::vector<NotificationRequest> requests;
    while (rows->step()) {
        const DueTask task{.id = rows->uuid(0),
                           .title = std::string(rows->text(1)),
                           .dueDate = Date(Date::duration(rows->integer(2))),
                           .dueHasTime = rows->integer(3) != 0};
        if (auto request = dueNotification(task, time, calendar, now))
            requests.push_back(std::move(*request));
    }
    return requests;
}

} // namespace quillorn
