#pragma once

#include <filesystem>

namespace quillorn {

class SettingsStore;

/// Where backups go: the folder that the user chose, while it or its parent can be written, else "Backups" beside the
/// store.
std::filesystem::path backupFolder(SettingsStore& settings, const std::filesystem::path& storeFile);

} // namespace quillorn
