#pragma once

#include "Reminders/ReminderTriage.h"

#include <cstddef>
#include <set>
#include <span>
#include <stop_token>
#include <string>
#include <vector>

namespace quillorn {

class Calendar;
class Clock;
class ModelContainer;
class ReminderMemory;
class ReminderStore;
class SettingsStore;

/// What came of rows that were to be imported.
struct ApplyResult {
    std::size_t created = 0;
    std::size_t completed = 0;
    /// In words, each with the title of its reminder.
    std::vector<std::string> failures;
    /// Of reminders.
    std::set<std::string> importedIDs;
};

/// "Created 2 tasks, completed 1 reminder"; the latter where that was wanted.
std::string importedLine(const ApplyResult& result, bool completes);

/// What it takes to make tasks of rows. Referred to, not owned; all of it is used on the calling thread, which waits
/// for the disk.
struct ReminderApplyEnvironment {
    ModelContainer& container;
    ReminderMemory& memory;
    ReminderStore& reminders;
    SettingsStore& settings;
    const Clock& clock;
    const Calendar& calendar;
    /// The reminders are made up, and can only seem to be completed.
    bool hasDemoReminders = false;
};

/// The lines of the setting reminderImportRecent.
inline constexpr std::size_t recentLength = 20;

/// Makes a task of each row that is included, has a project and a title, and was not imported before. Each is saved and
/// written into the ledger before the next begins, so that neither a failure nor the end of the process at any point
/// imports one twice. With `complete` the reminder is marked as completed, if its list is among `lists`.
ApplyResult applyRows(const ReminderApplyEnvironment& environment, std::span<const ReminderImportRow> rows,
                      bool complete, std::span<const std::string> lists, const std::stop_token& stop);

/// Sets right what the end of a process has left between the save of a task and the ledger.
void settlePending(ModelContainer& container, ReminderMemory& memory);

} // namespace quillorn
