#include "Views/BackupSettingsView.h"

#include "Models/Formatters.h"
#include "Models/Settings.h"
#include "Platform/Clock.h"
#include "Platform/SystemLog.h"
#include "Services/BackupService.h"

#include <fmt/core.h>

namespace quillorn {

BackupSettingsView::BackupSettingsView(Environment environment)
    : SettingsPane(environment.settings, environment.mainQueue),
      m_environment(environment),
      m_serviceChanges(environment.service.observe([this] { tell(); })) {}

bool BackupSettingsView::isAutomatic() const {
    return Settings(settings()).boolean(setting("backupEnabled"));
}
void BackupSettingsView::setAutomatic(bool isAutomatic) {
    keep(setting("backupEnabled"), isAutomatic);
}

std::filesystem::path BackupSettingsView::folder() const {
    return m_environment.service.backupFolderURL();
}

void BackupSettingsView::chooseFolder(const std::filesystem::path& folder) {
    try {
        m_environment.service.setBackupFolder(folder);
    } catch (const std::exception& error) {
        m_environment.log.log(fmt::format("Could not save backup folder access: {}", error.what()));
    }
}

std::optional<std::string> BackupSettingsView::folderWarning() const {
    if (!m_environment.service.isBackupFolderAccessLost())
        return std::nullopt;
    return fmt::format("Quillorn can no longer write to {}. Choose the folder again to restore access; backups go to "
                       "the default folder until then.",
                       Settings(settings()).text(setting("backupFolderPath")));
}

std::string BackupSettingsView::lastBackup() const {
    const auto date = m_environment.service.lastBackupDate();
    return date ? relativeTime(*date, m_environment.clock.now()) + " ago" : "Never";
}
bool BackupSettingsView::isBackingUp() const {
    return m_environment.service.isBackingUp();
}
void BackupSettingsView::backUpNow() {
    m_environment.service.runBackup(true);
}
std::optional<std::string> BackupSettingsView::lastResult() const {
    return m_environment.service.lastResult();
}
std::optional<std::string> BackupSettingsView::lastError() const {
    return m_environment.service.lastError();
}

bool BackupSettingsView::isRestoring() const {
    return m_environment.service.isRestoring();
}

Confirmation BackupSettingsView::confirmationFor(const std::filesystem::path& file) {
    return {"Replace all current data?",
            fmt::format("Restoring “{}” replaces your current clients, projects, tasks, notes, and time entries. Your "
                        "current data is snapshotted to the backup folder first, so you can undo this.",
                        file.filename().string())};
}

void BackupSettingsView::restore(const std::filesystem::path& file) {
    m_environment.service.restoreFromFile(file);
}

} // namespace quillorn
