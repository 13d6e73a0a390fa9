#pragma once

#include "Platform/Date.h"
#include "Platform/MainQueue.h"

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <thread>

namespace quillorn {

class Calendar;
class Clock;
class ModelContainer;
class SettingsStore;
class SystemLog;

/// What the service needs of the outside world. Referred to, not owned.
struct BackupEnvironment {
    const Clock& clock;
    const Calendar& calendar;
    SettingsStore& settings;
    MainQueue& mainQueue;
    SystemLog& log;
};

/// Keeps compressed, checked copies of the store in a folder of the user's choice, thins them by age, and brings any
/// of them back into the running application. Belongs to the main thread; the work itself runs on threads of its own,
/// whose end the destructor waits for.
class BackupService {
  public:
    /// With `schedule` it takes backups by itself: 30 seconds after the start, then each hour.
    BackupService(BackupEnvironment environment, std::filesystem::path storeURL, ModelContainer& container,
                  bool schedule);
    ~BackupService();
    BackupService(const BackupService&) = delete;
    BackupService& operator=(const BackupService&) = delete;

    /// Called after the state below has changed.
    std::function<void()> onChange;

    /// The moment of which the last backup is, also in an earlier run. Absent while it lies ahead, as after a clock
    /// that was: then nobody knows.
    std::optional<Date> lastBackupDate() const;
    /// The file that it made; absent before the first one of this run.
    const std::optional<std::filesystem::path>& lastBackupFile() const { return m_lastBackupFile; }
    /// The backup of what the last restore of this run has replaced: restoring it undoes that.
    const std::optional<std::filesystem::path>& lastSafetySnapshot() const { return m_lastSafetySnapshot; }
    /// What the last pass came to, a backup or a restore; absent when it failed.
    const std::optional<std::string>& lastResult() const { return m_lastResult; }
    const std::optional<std::string>& lastError() const { return m_lastError; }
    bool isBackingUp() const { return m_isBackingUp; }
    bool isRestoring() const { return m_isRestoring; }

    /// Takes a backup, unless one is under way; without `force` only if the store has changed since the last one.
    void runBackup(bool force);
    /// Replaces all data by that of a backup, unless a restore is under way. A backup of the present data is taken
    /// first. When it fails nothing has changed.
    void restoreFromFile(const std::filesystem::path& file);

    std::filesystem::path backupFolderURL() const;
    /// Throws BackupError for what is no folder that can be written, and std::runtime_error when the choice can't be
    /// kept.
    void setBackupFolder(const std::filesystem::path& folder);
    /// Whether the folder that was chosen can't be used.
    bool isBackupFolderAccessLost() const;

  private:
    struct Backup {
        std::filesystem::path file;
        Date date;
        std::uintmax_t size = 0;
        std::size_t pruned = 0;
    };

    void runScheduledBackup();
    bool hasStoreChangedSince(Date date) const;
    Backup takeBackup(const std::filesystem::path& folder, Date date) const;
    void finishBackup(const Backup& backup);
    void finishBackup(std::optional<std::string> result, std::optional<std::string> error);
    std::filesystem::path takeSnapshot(const std::filesystem::path& folder, Date date) const;
    /// Returns the safety snapshot, where there was something to keep.
    std::optional<std::filesystem::path> restore(const std::filesystem::path& file,
                                                 const std::filesystem::path& folder) const;
    void finishRestore(std::optional<std::string> result, std::optional<std::string> error);
    void changed() const;
    /// Runs `work` on `thread`, and what it returns on the main queue while this object is there.
    void inBackground(std::thread& thread, std::function<MainQueue::Work()> work);

    const BackupEnvironment m_environment;
    const std::filesystem::path m_storeURL;
    ModelContainer& m_container;
    std::optional<Date> m_lastBackupDate;
    std::optional<std::filesystem::path> m_lastBackupFile;
    std::optional<std::filesystem::path> m_lastSafetySnapshot;
    std::optional<std::string> m_lastResult;
    std::optional<std::string> m_lastError;
    bool m_isBackingUp = false;
    bool m_isRestoring = false;
    std::optional<MainQueue::TimerId> m_firstTimer;
    std::optional<MainQueue::TimerId> m_timer;
    /// What threads have posted asks it whether we are still there.
    std::shared_ptr<const bool> m_isAlive = std::make_shared<const bool>(true);
    std::thread m_backupThread;
    std::thread m_restoreThread;
};

} // namespace quillorn
