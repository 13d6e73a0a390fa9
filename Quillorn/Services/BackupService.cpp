#include "Services/BackupService.h"

#include "Models/Formatters.h"
#include "Models/SchemaVersions.h"
#include "Models/Settings.h"
#include "Platform/AtomicFile.h"
#include "Platform/Calendar.h"
#include "Platform/Clock.h"
#include "Platform/FileContent.h"
#include "Platform/Process.h"
#include "Platform/SettingsStore.h"
#include "Platform/SystemLog.h"
#include "Platform/TemporaryDirectory.h"
#include "Services/BackupError.h"
#include "Services/BackupFolder.h"
#include "Services/StoreSnapshot.h"
#include "Store/ReplaceContents.h"

#include <algorithm>
#include <fmt/core.h>
#include <system_error>
#include <utility>

namespace quillorn {

namespace fs = std::filesystem;

namespace {

constexpr std::chrono::seconds firstDelay{30};
constexpr std::chrono::hours period{1};

} // namespace

BackupService::BackupService(BackupEnvironment environment, fs::path storeURL, ModelContainer& container, bool schedule)
    : m_environment(environment),
      m_storeURL(std::move(storeURL)),
      m_container(container) {
    const Json stored = Settings(m_environment.settings).value(setting("backupLastDate"));
    if (const std::string* text = stored.asString())
        m_lastBackupDate = parseISO8601(*text);
    if (!schedule)
        return;
    m_firstTimer = m_environment.mainQueue.after(firstDelay, [this] {
        const auto last = lastBackupDate();
        if (!last || m_environment.clock.now() - *last >= period)
            runScheduledBackup();
    });
    m_timer = m_environment.mainQueue.every(period, [this] { runScheduledBackup(); });
}

BackupService::~BackupService() {
    for (const auto& timer : {m_firstTimer, m_timer})
        if (timer)
            m_environment.mainQueue.cancel(*timer);
    for (std::thread* thread : {&m_backupThread, &m_restoreThread})
        if (thread->joinable())
            thread->join();
}

std::optional<Date> BackupService::lastBackupDate() const {
    return m_lastBackupDate && *m_lastBackupDate <= m_environment.clock.now() ? m_lastBackupDate : std::nullopt;
}

fs::path BackupService::backupFolderURL() const {
    return backupFolder(m_environment.settings, m_storeURL);
}

bool BackupService::isBackupFolderAccessLost() const {
    return quillorn::isBackupFolderAccessLost(m_environment.settings);
}

void BackupService::setBackupFolder(const fs::path& folder) {
    chooseBackupFolder(m_environment.settings, folder);
    changed();
}

void BackupService::runScheduledBackup() {
    if (Settings(m_environment.settings).boolean(setting("backupEnabled")))
        runBackup(false);
}

void BackupService::runBackup(bool force) {
    if (m_isBackingUp)
        return;
    m_isBackingUp = true;
    changed();
    std::error_code unknown;
    if (!fs::exists(m_storeURL, unknown))
        return finishBackup("Skipped — no store yet", std::nullopt);
    if (const auto last = lastBackupDate(); !force && last && !hasStoreChangedSince(*last))
        return finishBackup("Skipped — no changes since last backup", std::nullopt);
    // What changes from here on belongs to the next one, be it in the copy or not.
    const Date date = m_environment.clock.now();
    inBackground(m_backupThread, [this, date, folder = backupFolderURL()]() -> MainQueue::Work {
        lowerThreadPriority();
        try {
            return [this, backup = takeBackup(folder, date)] { finishBackup(backup); };
        } catch (const std::exception& error) {
            return [this, words = std::string(error.what())] { finishBackup(std::nullopt, words); };
        }
    });
}

bool BackupService::hasStoreChangedSince(Date date) const {
    const auto suffixes = {"", "-shm", "-wal"};
    return std::any_of(suffixes.begin(), suffixes.end(), [&](const char* suffix) {
        const auto modified = modificationDate(fs::path(m_storeURL.string() + suffix));
        return modified && *modified > date;
    });
}

/// Names have minutes, and no backup replaces another one: it takes the name of the next minute that is free. On the
/// thread of a backup or a restore.
fs::path BackupService::takeSnapshot(const fs::path& folder, Date date) const {
    const Calendar& calendar = m_environment.calendar;
    TemporaryDirectory::removeAbandoned();
    removeAbandonedFiles(folder, [&](std::string_view name) { return dateOfBackup(name, calendar).has_value(); });
    return snapshotStore(
        m_storeURL, folder, [&](int taken) { return backupFileName(date + std::chrono::minutes{taken}, calendar); },
        m_container.random());
}

/// On the thread of the backup.
BackupService::Backup BackupService::takeBackup(const fs::path& folder, Date date) const {
    const auto& [clock, calendar, settings, queue, log] = m_environment;
    Backup backup;
    backup.date = date;
    backup.file = takeSnapshot(folder, date);
    backup.pruned = pruneBackups(folder, clock.now(), calendar);
    std::error_code error;
    const std::uintmax_t size = fs::file_size(backup.file, error);
    backup.size = error ? 0 : size;
    return backup;
}

void BackupService::finishBackup(const Backup& backup) {
    m_lastBackupDate = backup.date;
    m_lastBackupFile = backup.file;
    try {
        Settings(m_environment.settings).set(setting("backupLastDate"), formatISO8601(*m_lastBackupDate));
    } catch (const std::exception& error) {
        m_environment.log.log(error.what()); // the backup is there; only the next run won't know when
    }
    std::string result = "Backed up " + fileSize(backup.size);
    if (backup.pruned > 0)
        result += fmt::format(", pruned {} old", backup.pruned);
    finishBackup(std::move(result), std::nullopt);
}

void BackupService::finishBackup(std::optional<std::string> result, std::optional<std::string> error) {
    m_lastResult = std::move(result);
    m_lastError = std::move(error);
    m_isBackingUp = false;
    changed();
}

void BackupService::restoreFromFile(const fs::path& file) {
    if (m_isRestoring)
        return;
    m_isRestoring = true;
    m_lastError.reset();
    m_lastResult.reset();
    m_lastSafetySnapshot.reset();
    changed();
    inBackground(m_restoreThread, [this, file, folder = backupFolderURL()]() -> MainQueue::Work {
        try {
            return [this, file, snapshot = restore(file, folder)] {
                m_lastSafetySnapshot = snapshot;
                finishRestore("Restored from " + file.filename().string(), std::nullopt);
            };
        } catch (const std::exception& error) {
            return
                [this, words = std::string(error.what())] { finishRestore(std::nullopt, "Restore failed: " + words); };
        }
    });
}

/// On the thread of the restore.
std::optional<fs::path> BackupService::restore(const fs::path& file, const fs::path& folder) const {
    std::optional<fs::path> snapshot;
    std::error_code unknown;
    if (fs::exists(m_storeURL, unknown))
        snapshot = takeSnapshot(folder, m_environment.clock.now());

    const TemporaryDirectory temporary(m_container.random());
    const fs::path copy = temporary / "source.store";
    unpackBackup(file, copy);
    // Migrates the copy where it is of an earlier version.
    const auto source = openContainer({.name = "restore-source", .url = copy, .cloudContainerIdentifier = {}},
                                      {m_container.random(), m_container.notifications()}, m_environment.log);
    replaceStoreContents(*source, m_container);
    return snapshot;
}

void BackupService::finishRestore(std::optional<std::string> result, std::optional<std::string> error) {
    m_lastResult = std::move(result);
    m_lastError = std::move(error);
    m_isRestoring = false;
    changed();
}

void BackupService::changed() const {
    if (onChange)
        onChange();
}

void BackupService::inBackground(std::thread& thread, std::function<MainQueue::Work()> work) {
    if (thread.joinable())
        thread.join(); // has posted its result, and ends
    auto post = [this, work = std::move(work), alive = std::weak_ptr(m_isAlive)] {
        MainQueue::Work finish = work();
        releaseFreeMemory();
        m_environment.mainQueue.post([finish = std::move(finish), alive] {
            if (!alive.expired())
                finish();
        });
    };
    try {
        thread = std::thread(post);
    } catch (const std::system_error&) {
        post(); // without room for another thread a pause of this one is better than no backup
    }
}

} // namespace quillorn
