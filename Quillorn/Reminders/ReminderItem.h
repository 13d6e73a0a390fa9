#pragma once

#include "Platform/Date.h"
#include "Platform/UUID.h"

#include <map>
#include <optional>
#include <string>

namespace quillorn {

struct Reminder;

/// One open reminder as it was when it was read.
struct ReminderItem {
    /// The key under which it is remembered, on every machine.
    std::string id{};
    /// By which this machine finds it again.
    std::string localID{};
    std::string title{};
    std::string notes{};
    std::optional<Date> dueDate{};
    std::string listName{};

    static ReminderItem of(const Reminder& reminder);

    bool operator==(const ReminderItem&) const = default;
};

/// Tells whether what a reminder says has changed, whoever it is: a hash over title, notes, due date and list.
std::string reminderFingerprint(const ReminderItem& item);

/// A decision against a reminder, which holds until the reminder changes.
struct SkippedReminder {
    std::string fingerprint{};
    std::string reason{};
    std::optional<UUID> projectID{};
    std::string title{};
    std::string listName{};
    Date date{};

    bool operator==(const SkippedReminder&) const = default;
};

/// By the reminder's id.
using SkippedReminders = std::map<std::string, SkippedReminder, std::less<>>;
/// From a reminder's id to that of the task that was made of it. An id in here is never looked at again.
using ReminderLedger = std::map<std::string, std::string, std::less<>>;

} // namespace quillorn
