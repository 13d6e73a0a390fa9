#pragma once

#include "Platform/Date.h"
#include "Platform/MainQueue.h"
#include "Platform/Observers.h"
#include "Platform/Task.h"

#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>
#include <utility>

namespace quillorn {

class Background;
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
    Background& background;
    SystemLog& log;
};

/// Keeps compressed, checked copies of the store in a folder of the user's choice, thins them by age, and brings any
/// of them back into the running application. Belongs to the main thread; the work itself runs in the background and
/// may outlive this object there, but not the store.
class BackupService {
  public:
    /// With `schedule` it takes backups by itself: 30 seconds after the start, then each hour; of several
    /// processes on the store one does, and another takes over when that one has ended.
    BackupService(BackupEnvironment environment, std::filesystem::path storeURL, ModelContainer& container,
                  bool schedule);
    ~BackupService();
    BackupService(const BackupService&) = delete;
    BackupService& operator=(const BackupService&) = delete;

    /// Tells after the state below has changed.
    Observation observe(Observers<>::Handler handler) { return m_observers.add(std::move(handler)); }

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
    class Work;

    void runScheduledBackup();
    /// By the settings: that of another process, too.
    std::optional<Date> storedDate() const;
    /// Whether the backup of this hour is that of another process on the store.
    bool isTakenByOthers() const;
    bool hasStoreChangedSince(Date date) const;
    Work work() const;
    Task<> backUp(Date date);
    Task<> restore(std::filesystem::path file);
    void noteDate(Date date);
    void finish(bool& isUnderWay, std::optional<std::string> result, std::optional<std::string> error);

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
    Observers<> m_observers;
    TaskScope m_tasks;
};

} // namespace quillorn
