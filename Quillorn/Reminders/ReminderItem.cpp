#include "Reminders/ReminderItem.h"

#include "Platform/Crypto.h"
#include "Platform/ReminderStore.h"

#include <chrono>

namespace quillorn {

ReminderItem ReminderItem::of(const Reminder& reminder) {
    const std::string& external = reminder.calendarItemExternalIdentifier;
    return {
        .id = external.empty() ? reminder.calendarItemIdentifier : external,
        .localID = reminder.calendarItemIdentifier,
        .title = reminder.title,
        .notes = reminder.notes,
        .dueDate = reminder.dueDate,
        .listName = reminder.listTitle,
    };
}

std::string reminderFingerprint(const ReminderItem& item) {
    constexpr char separator = '\x1F';
    std::string due;
    if (item.dueDate) // cut towards zero
        due =
            std::to_string(std::chrono::duration_cast<std::chrono::seconds>(item.dueDate->time_since_epoch()).count());
    return hexString(sha256(item.title + separator + item.notes + separator + due + separator + item.listName));
}

} // namespace quillorn
