#include "Services/BackupFolder.h"

#include "Models/Settings.h"
#include "Platform/Calendar.h"
#include "Platform/FileContent.h"
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

namespace {

/// The wall-clock time in a name; absent for a name that no backup has.
std::optional<std::chrono::local_seconds> minuteOfName(std::string_view fileName) {
    if (fileName.size() < namePrefix.size() + nameSuffix.size() || !fileName.starts_with(namePrefix) ||
        !fileName.ends_with(nameSuffix))
        return std::nullopt;
    fileName.remove_prefix(namePrefix.size());
    fileName.remove_suffix(nameSuffix.size());
    return parseMinute(fileName);
}

/// When a file was written, if the name can be of that minute in some zone of the earth: then that is when the backup
/// was taken, in whatever zone its user was. A copy without its dates is not, most times.
std::optional<Date> dateByFile(const fs::path& file, std::chrono::local_seconds minute) {
    using namespace std::chrono;
    const auto written = modificationDate(file);
    if (!written)
        return std::nullopt;
    const Date asUTC{duration_cast<Date::duration>(minute.time_since_epoch())};
    // Zones are whole quarters of an hour from UTC. The file is done a while after the minute that it is named for, or
    // just before, where it had to take the next name.
    constexpr minutes quarter{15};
    constexpr minutes early{1};
    constexpr minutes late{2};
    constexpr minutes west{-12 * 60};
    constexpr minutes east{14 * 60};
    const auto ahead = floor<minutes>(asUTC - *written + late);
    const auto offset = minutes{ahead - (ahead % quarter + quarter) % quarter};
    if (offset < west || offset > east || asUTC - *written - offset > early)
        return std::nullopt;
    return asUTC - offset;
}

} // namespace

std::optional<Date> dateOfBackup(std::string_view fileName, const Calendar& calendar) {
    const auto minute = minuteOfName(fileName);
    return minute ? std::optional(calendar.instant(*minute)) : std::nullopt;
}

std::map<Date, fs::path> listBackups(const fs::path& folder, const Calendar& calendar) {
    std::map<Date, fs::path> backups;
    for (const fs::directory_entry& entry : fs::directory_iterator(folder)) {
        const auto minute = minuteOfName(entry.path().filename().string());
        if (!minute || entry.is_directory())
            continue;
        Date date = dateByFile(entry.path(), *minute).value_or(calendar.instant(*minute));
        while (!backups.emplace(date, entry.path()).second)
            date += std::chrono::seconds{1}; // of the same minute in two zones
    }
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
