#include "Services/BackupFolder.h"

#include "Models/Settings.h"
#include "Platform/Calendar.h"
#include "Platform/SettingsStore.h"
#include "Services/BackupError.h"
#include "Services/BackupRetention.h"

#include <algorithm>
#include <fmt/core.h>
#include <system_error>
#include <unistd.h>
#include <vector>

namespace quillorn {

namespace fs = std::filesystem;

namespace {

constexpr std::string_view namePrefix = "Quillorn-";
constexpr std::string_view nameSuffix = ".store.lzfse";

bool isWritable(const fs::path& path) {
    return ::access(path.c_str(), W_OK) == 0;
}

fs::path chosenFolder(SettingsStore& settings) {
    return Settings(settings).text(setting("backupFolderPath"));
}

/// A relative path would be another folder for each process.
bool canBeWritten(const fs::path& folder) {
    return folder.is_absolute() && (isWritable(folder) || isWritable(folder.parent_path()));
}

/// Absent for anything but that many digits.
std::optional<int> number(std::string_view digits) {
    int value = 0;
    for (const char digit : digits) {
        if (digit < '0' || digit > '9')
            return std::nullopt;
        value = value * 10 + (digit - '0');
    }
    return value;
}

/// Reads "yyyyMMdd-HHmm".
std::optional<std::chrono::local_seconds> parseMinute(std::string_view text) {
    using namespace std::chrono;
    if (text.size() != 13 || text[8] != '-')
        return std::nullopt;
    const auto yearNumber = number(text.substr(0, 4));
    const auto monthNumber = number(text.substr(4, 2));
    const auto dayNumber = number(text.substr(6, 2));
    const auto hour = number(text.substr(9, 2));
    const auto minute = number(text.substr(11, 2));
    if (!yearNumber || !monthNumber || !dayNumber || !hour || !minute || *hour > 23 || *minute > 59)
        return std::nullopt;
    const year_month_day date{year{*yearNumber}, month(static_cast<unsigned>(*monthNumber)),
                              day(static_cast<unsigned>(*dayNumber))};
    if (!date.ok())
        return std::nullopt;
    return local_days{date} + hours{*hour} + minutes{*minute};
}

/// "yyyyMMdd-HHmm" with plain digits and Gregorian years, whatever the user's locale.
std::string minuteText(Date date, const Calendar& calendar) {
    return Calendar(calendar.timeZone(), "en_US_POSIX").format(date, "yyyyMMdd-HHmm");
}

} // namespace

fs::path backupFolder(SettingsStore& settings, const fs::path& storeFile) {
    fs::path chosen = chosenFolder(settings);
    return canBeWritten(chosen) ? chosen : storeFile.parent_path() / "Backups";
}

bool isBackupFolderAccessLost(SettingsStore& settings) {
    const fs::path chosen = chosenFolder(settings);
    return !chosen.empty() && !canBeWritten(chosen);
}

void chooseBackupFolder(SettingsStore& settings, const fs::path& folder) {
    std::error_code unknown;
    if (!folder.is_absolute() || !fs::is_directory(folder, unknown) || !isWritable(folder))
        throw BackupError(fmt::format("{} is no folder that can be written", folder.string()));
    Settings(settings).set(setting("backupFolderPath"), folder.string());
}

std::string backupFileName(Date date, const Calendar& calendar) {
    return fmt::format("{}{}{}", namePrefix, minuteText(date, calendar), nameSuffix);
}

std::optional<Date> dateOfBackup(std::string_view fileName, const Calendar& calendar) {
    if (fileName.size() < namePrefix.size() + nameSuffix.size() || !fileName.starts_with(namePrefix) ||
        !fileName.ends_with(nameSuffix))
        return std::nullopt;
    fileName.remove_prefix(namePrefix.size());
    fileName.remove_suffix(nameSuffix.size());
    const auto minute = parseMinute(fileName);
    return minute ? std::optional(calendar.instant(*minute)) : std::nullopt;
}

std::map<Date, fs::path> listBackups(const fs::path& folder, const Calendar& calendar) {
    std::map<Date, fs::path> backups;
    for (const fs::directory_entry& entry : fs::directory_iterator(folder))
        if (const auto date = dateOfBackup(entry.path().filename().string(), calendar); date && !entry.is_directory())
            backups.emplace(*date, entry.path());
    return backups;
}

std::vector<Date> datesOf(const std::map<Date, fs::path>& backups) {
    std::vector<Date> dates;
    dates.reserve(backups.size());
    for (const auto& [date, file] : backups)
        dates.push_back(date);
    return dates;
}

std::size_t pruneBackups(const fs::path& folder, Date now, const Calendar& calendar) {
    std::size_t count = 0;
    try {
        const auto backups = listBackups(folder, calendar);
        for (const Date date : datesToPrune(datesOf(backups), now, calendar)) {
            std::error_code ignored;
            count += fs::remove(backups.at(date), ignored) ? 1 : 0;
        }
    } catch (const std::system_error&) {
        // A folder that can't be read has nothing to delete.
    }
    return count;
}

} // namespace quillorn
