#pragma once

#include "Platform/Date.h"

#include <optional>
#include <span>
#include <stdexcept>
#include <string>
#include <vector>

namespace quillorn {

/// A list of reminders of the system.
struct ReminderList {
    /// What tells it from others of the same title.
    std::string identifier;
    std::string title;
};

/// A reminder as it was when it was read.
struct Reminder {
    /// The same on every machine that has the reminder; empty where it has none.
    std::string calendarItemExternalIdentifier;
    /// By which this machine finds it again.
    std::string calendarItemIdentifier;
    std::string title;
    std::string notes;
    /// Due on a day without a time: the start of that day here.
    std::optional<Date> dueDate;
    std::string listTitle;
};

class ReminderError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

/// The user's reminders, which belong to other programs: they are read, and at most completed, never deleted. Safe to
/// share between threads; each operation may wait for a disk, so it is none for the main thread.
class ReminderStore {
  public:
    virtual ~ReminderStore() = default;

    /// Whether reminders may be read, after asking the user where the system does.
    virtual bool requestFullAccess() = 0;
    /// All lists. Throws ReminderError.
    virtual std::vector<ReminderList> lists() = 0;
    /// The open reminders of those lists, due or not, in a fixed order. What can't be read is left out. Throws
    /// ReminderError.
    virtual std::vector<Reminder> openReminders(std::span<const ReminderList> lists) = 0;
    /// The reminder of that calendarItemIdentifier, open or not; absent when it is gone.
    virtual std::optional<Reminder> reminder(const std::string& identifier) = 0;
    /// Marks it as completed and keeps that; one that is not open stays as it is. Throws ReminderError.
    virtual void complete(const std::string& identifier) = 0;
};

} // namespace quillorn
