#pragma once

#include "Reminders/ReminderApply.h"
#include "Reminders/ReminderMemory.h"
#include "Reminders/ReminderTriage.h"

#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace quillorn {

class ModelContainer;
class ReminderStore;

/// What a pass and a review go by.
struct GatheredReminders {
    ReminderPartition reminders;
    std::set<std::string> openIDs;
    std::vector<ReminderImportProject> projects;
    std::vector<OpenTask> openTasks;
};

/// Reads the user's reminders, and beside them what is there already. Waits for the disk; a copy goes to the thread
/// that may.
struct ReminderReading {
    ModelContainer* container;
    std::shared_ptr<ReminderMemory> memory;
    ReminderStore& store;
    /// In place of those of the system.
    std::optional<std::vector<ReminderItem>> demo;

    /// The titles of all lists, each one once.
    std::vector<std::string> listNames() const;
    /// The open reminders of those lists that were not imported before.
    std::vector<ReminderItem> open(const std::vector<std::string>& lists) const;
    GatheredReminders gather(const std::vector<std::string>& lists) const;

  private:
    std::vector<ReminderItem> open(const std::vector<std::string>& lists, const ReminderRecords& records) const;
};

} // namespace quillorn
