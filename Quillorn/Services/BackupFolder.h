#pragma once

#include "Platform/Date.h"

#include <cstddef>
#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quillorn {

class Calendar;
class SettingsStore;

/// Where backups go: the folder that the user chose, while it or its parent can be written, else "Backups" beside the
/// store.
std::filesystem::path backupFolder(SettingsStore& settings, const std::filesystem::path& storeFile);

/// Makes `folder` the user's choice. Throws BackupError for what is no folder that can be written, and
/// std::runtime_error when the choice can't be kept.
void chooseBackupFolder(SettingsStore& settings, const std::filesystem::path& folder);

/// Whether the user chose a folder, and it can't be written.
bool isBackupFolderAccessLost(SettingsStore& settings);

/// "Quillorn-20260131-0905.store.lzfse": the wall-clock time in the calendar's zone.
std::string backupFileName(Date date, const Calendar& calendar);
/// Absent for a name that no backup has.
std::optional<Date> dateOfBackup(std::string_view fileName, const Calendar& calendar);

/// The backups of a folder, by when they were taken: names have the time of the zone in which that was, and the dates
/// of the files tell which. Throws std::system_error when it can't be read.
std::map<Date, std::filesystem::path> listBackups(const std::filesystem::path& folder, const Calendar& calendar);

/// In ascending order.
std::vector<Date> datesOf(const std::map<Date, std::filesystem::path>& backups);

/// Deletes what the retention rule does not keep. Returns how many went; failures only make it fewer.
std::size_t pruneBackups(const std::filesystem::path& folder, Date now, const Calendar& calendar);

} // namespace quillorn
