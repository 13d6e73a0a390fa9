#pragma once

#include "Reminders/ReminderItem.h"

#include <filesystem>
#include <functional>
#include <memory>
#include <mutex>

namespace quillorn {

class Clock;
class Paths;
class SystemLog;

/// What the import remembers of reminders, for good.
struct ReminderRecords {
    ReminderLedger ledger;
    /// Whose task is just being saved: from the reminder's id to the task's. What is left here was interrupted.
    ReminderLedger pending;
    SkippedReminders skipped;

    bool operator==(const ReminderRecords&) const = default;
};

/// Keeps the records in a JSON file, replaced as a whole at each change, under an advisory lock, so that several
/// processes can share it. A part that can't be understood counts as empty; a file that is no JSON object is renamed to
/// "<name>.broken-<date>" with a line in the log. Safe to share between threads; waits for the disk.
class ReminderMemory {
  public:
    ReminderMemory(std::filesystem::path file, const Clock& clock, SystemLog& log);
    ~ReminderMemory();

    const std::filesystem::path& file() const { return m_file; }

    /// As they stand in the file. One that is not there holds none. Throws std::system_error when it can't be read.
    std::shared_ptr<const ReminderRecords> read();
    /// Lets `change` work on the latest records, and keeps them; the file is not written where nothing changes. Throws
    /// std::system_error; then nothing has changed.
    void update(const std::function<void(ReminderRecords&)>& change);

  private:
    struct Known;
    std::shared_ptr<const ReminderRecords> readLocked();
    std::shared_ptr<const ReminderRecords> setAside(const char* reason);

    const std::filesystem::path m_file;
    const Clock& m_clock;
    SystemLog& m_log;
    std::mutex m_mutex;
    std::unique_ptr<Known> m_known;
};

/// Beside the settings.
std::filesystem::path reminderRecordsFile(const Paths& paths);

} // namespace quillorn
