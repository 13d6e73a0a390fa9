#include "Services/BackupService.h"

#include "Models/Formatters.h"
#include "Models/SchemaVersions.h"
#include "Models/Settings.h"
#include "Platform/AtomicFile.h"
#include "Platform/Background.h"
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

struct Backup {
    fs::path file;
    std::uintmax_t size = 0;
    std::size_t pruned = 0;
};

} // namespace

/// What happens in the background, where the service may be gone.
class BackupService::Work {
  public:
    Work(const BackupEnvironment& environment, fs::path storeURL, fs::path folder, ModelContainer& container)
        : m_environment(environment),
          m_storeURL(std::move(storeURL)),
          m_folder(std::move(folder)),
          m_container(container) {}

    Backup takeBackup(Date date) const;
    /// Returns the safety snapshot, where there was something to keep.
    std::optional<fs::path> restore(const fs::path& file) const;

  private:
    fs::path takeSnapshot(Date date) const;

    BackupEnvironment m_environment;
    fs::path m_storeURL;
    fs::path m_folder;
    ModelContainer& m_container;
};

BackupService::BackupService(BackupEnvironment environment, fs::path storeURL, ModelContainer& container, bool schedule)
    : m_environment(environment),
      m_storeURL(std::move(storeURL)),
      m_container(container) {
    m_lastBackupDate = storedDate();
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
    m_observers.tell();
}

std::optional<Date> BackupService::storedDate() const {
    const Json stored = Settings(m_environment.settings).value(setting("backupLastDate"));
    const std::string* text = stored.asString();
    return text != nullptr ? parseISO8601(*text) : std::nullopt;
}

bool BackupService::isTakenByOthers() const {
    const auto stored = storedDate();
    const Date now = m_environment.clock.now();
    return stored && (!m_lastBackupDate || *stored > *m_lastBackupDate) && *stored <= now && now - *stored < period;
}

void BackupService::runScheduledBackup() {
    if (!isTakenByOthers() && Settings(m_environment.settings).boolean(setting("backupEnabled")))
        runBackup(false);
}

BackupService::Work BackupService::work() const {
    return {m_environment, m_storeURL, backupFolderURL(), m_container};
}

void BackupService::runBackup(bool force) {
    if (m_isBackingUp)
        return;
    m_isBackingUp = true;
    m_observers.tell();
    std::error_code unknown;
    if (!fs::exists(m_storeURL, unknown))
        return finish(m_isBackingUp, "Skipped — no store yet", std::nullopt);
    if (const auto last = lastBackupDate(); !force && last && !hasStoreChangedSince(*last))
        return finish(m_isBackingUp, "Skipped — no changes since last backup", std::nullopt);
    // What changes from here on belongs to the next one, be it in the copy or not.
    m_tasks.start(backUp(m_environment.clock.now()));
}

Task<> BackupService::backUp(Date date) {
    std::optional<Backup> backup;
    std::string failure;
    try {
        auto taking = [work = work(), date](const std::stop_token&) {
            Backup taken = work.takeBackup(date);
            releaseFreeMemory();
            return taken;
        };
        backup = co_await m_environment.background.run(std::move(taking), Background::Priority::low);
    } catch (const std::exception& error) {
        failure = error.what();
    }
    if (!backup)
        co_return finish(m_isBackingUp, std::nullopt, failure);
    m_lastBackupFile = backup->file;
    noteDate(date);
    std::string result = "Backed up " + fileSize(backup->size);
    if (backup->pruned > 0)
        result += fmt::format(", pruned {} old", backup->pruned);
    finish(m_isBackingUp, std::move(result), std::nullopt);
}

void BackupService::noteDate(Date date) {
    m_lastBackupDate = date;
    try {
        Settings(m_environment.settings).set(setting("backupLastDate"), formatISO8601(date));
    } catch (const std::exception& error) {
        m_environment.log.log(error.what()); // the backup is there; only the next run won't know when
    }
}

void BackupService::finish(bool& isUnderWay, std::optional<std::string> result, std::optional<std::string> error) {
    m_lastResult = std::move(result);
    m_lastError = std::move(error);
    isUnderWay = false;
    m_observers.tell();
}

bool BackupService::hasStoreChangedSince(Date date) const {
    const auto suffixes = {"", "-shm", "-wal"};
    return std::any_of(suffixes.begin(), suffixes.end(), [&](const char* suffix) {
        const auto modified = modificationDate(fs::path(m_storeURL.string() + suffix));
        return modified && *modified > date;
    });
}

/// Names have minutes, and no backup replaces another one: it takes the name of the next minute that is free.
fs::path BackupService::Work::takeSnapshot(Date date) const {
    const Calendar& calendar = m_environment.calendar;
    TemporaryDirectory::removeAbandoned();
    removeAbandonedFiles(m_folder, [&](std::string_view name) { return dateOfBackup(name, calendar).has_value(); });
    return snapshotStore(
        m_storeURL, m_folder, [&](int taken) { return backupFileName(date + std::chrono::minutes{taken}, calendar); },
        m_container.random());
}

Backup BackupService::Work::takeBackup(Date date) const {
    Backup backup;
    backup.file = takeSnapshot(date);
    backup.pruned = pruneBackups(m_folder, m_environment.clock.now(), m_environment.calendar);
    std::error_code error;
    const std::uintmax_t size = fs::file_size(backup.file, error);
    backup.size = error ? 0 : size;
    return backup;
}

void BackupService::restoreFromFile(const fs::path& file) {
    if (m_isRestoring)
        return;
    m_isRestoring = true;
    m_lastError.reset();
    m_lastResult.reset();
    m_lastSafetySnapshot.reset();
    m_observers.tell();
    m_tasks.start(restore(file));
}

Task<> BackupService::restore(fs::path file) {
    std::string failure;
    try {
        auto restoring = [work = work(), file](const std::stop_token&) {
            auto snapshot = work.restore(file);
            releaseFreeMemory();
            return snapshot;
        };
        m_lastSafetySnapshot = co_await m_environment.background.run(std::move(restoring));
    } catch (const std::exception& error) {
        failure = "Restore failed: " + std::string(error.what());
    }
    if (failure.empty())
        finish(m_isRestoring, "Restored from " + file.filename().string(), std::nullopt);
    else
        finish(m_isRestoring, std::nullopt, failure);
}

std::optional<fs::path> BackupService::Work::restore(const fs::path& file) const {
    std::optional<fs::path> snapshot;
    std::error_code unknown;
    if (fs::exists(m_storeURL, unknown))
        snapshot = takeSnapshot(m_environment.clock.now());

    const TemporaryDirectory temporary(m_container.random());
    const fs::path copy = temporary / "source.store";
    unpackBackup(file, copy);
    // Migrates the copy where it is of an earlier version.
    const auto source = openContainer({.name = "restore-source", .url = copy, .cloudContainerIdentifier = {}},
                                      {m_container.random(), m_container.notifications()}, m_environment.log);
    replaceStoreContents(*source, m_container);
    return snapshot;
}

} // namespace quillorn
