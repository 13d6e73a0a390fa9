#include "Services/BackupFolder.h"

#include "Models/Settings.h"
#include "Platform/SettingsStore.h"

#include <unistd.h>

namespace quillorn {

namespace {

bool isWritable(const std::filesystem::path& path) {
    return ::access(path.c_str(), W_OK) == 0;
}

} // namespace

std::filesystem::path backupFolder(SettingsStore& settings, const std::filesystem::path& storeFile) {
    std::filesystem::path chosen = Settings(settings).text(setting("backupFolderPath"));
    if (!chosen.empty() && (isWritable(chosen) || isWritable(chosen.parent_path())))
        return chosen;
    return storeFile.parent_path() / "Backups";
}

} // namespace quillorn
