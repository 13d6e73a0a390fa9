#include "CLI/Examination.h"

#include "AI/AIService.h"
#include "App/QuillornApp.h"
#include "CLI/NotificationCheck.h"
#include "CLI/PortProbe.h"
#include "CLI/Suggestion.h"
#include "Models/Formatters.h"
#include "Models/SchemaVersions.h"
#include "Models/Settings.h"
#include "Platform/FileContent.h"
#include "Platform/HttpClient.h"
#include "Platform/Paths.h"
#include "Platform/SettingsStore.h"
#include "Services/BackupFolder.h"
#include "Store/StoreCheck.h"

#include <algorithm>
#include <cerrno>
#include <fmt/format.h>
#include <iterator>
#include <map>
#include <system_error>
#include <unistd.h>

namespace quillorn {

namespace fs = std::filesystem;

namespace {

using std::chrono::days;

/// What is asked for beside twice the size of the store: room for a day's work.
constexpr std::uintmax_t leastRoom = 64'000'000;

/// The names of the time entries that run, the latest first.
constexpr const char* runningEntries =
    "SELECT coalesce(nullif(entry.title, ''), task.title, project.name || ' (General)', 'Unassigned') "
    "FROM TimeEntry entry LEFT JOIN ProjectTask task ON task.key = entry.task "
    "LEFT JOIN Project project ON project.key = entry.project "
    "WHERE entry.endTime IS NULL ORDER BY entry.startTime DESC, entry.key DESC LIMIT 100";

bool isThere(const fs::path& path) {
    std::error_code unknown;
    return fs::exists(path, unknown);
}

/// The names under which a store's data stands.
std::vector<fs::path> filesOf(const fs::path& store) {
    return {store, store.string() + "-wal", store.string() + "-shm"};
}

std::uintmax_t sizeOf(const fs::path& store) {
    std::uintmax_t sum = 0;
    for (const fs::path& file : filesOf(store)) {
        std::error_code unknown;
        const std::uintmax_t size = fs::file_size(file, unknown);
        sum += unknown ? 0 : size;
    }
    return sum;
}

std::map<Date, fs::path> backupsIn(const fs::path& folder, const Calendar& calendar) {
    try {
        return listBackups(folder, calendar);
    } catch (const std::system_error&) {
        return {};
    }
}

/// Why something can't be written; empty where it can. What is not there is made in the nearest folder that is.
std::string whyNotWritable(fs::path path) {
    while (!isThere(path) && path != path.parent_path())
        path = path.parent_path();
    std::error_code unknown;
    const int needed = R_OK | W_OK | (fs::is_directory(path, unknown) ? X_OK : 0);
    if (::access(path.c_str(), needed) == 0)
        return "";
    const int error = errno;
    return fmt::format("{} can't be read and written: {}", path.string(), std::generic_category().message(error));
}

/// The same of all that is written when a store is in use.
std::string whyNotWritableStore(const fs::path& store) {
    std::vector<fs::path> paths = filesOf(store);
    paths.push_back(store.parent_path());
    paths.emplace_back(store.string() + "-lock");
    for (const fs::path& path : paths)
        if (std::string fault = whyNotWritable(path); !fault.empty())
            return fault;
    return "";
}

std::vector<Finding> examineStore(const fs::path& file, bool hasBackups, RandomSource& random) {
    if (const std::string fault = whyNotWritableStore(file); !fault.empty())
        return {{"store", false, fault + "; give Quillorn's user the right to"}};
    if (!isThere(file)) {
        if (hasBackups)
            return {{"store", false,
                     fmt::format("{} is missing; \"quillorn backups\" shows what \"quillorn restore FILE\" can bring "
                                 "back",
                                 file.string())}};
        return {{"store", true, fmt::format("{} will be made at the first start", file.string())}};
    }
    const StoreCheck check = checkStore(file, random, runningEntries);
    const std::string advice = "move it away (with its -wal and -shm), then \"quillorn restore FILE\" one of "
                               "\"quillorn backups\"";
    if (!check.fault.empty() && !check.isDamaged)
        return {{"store", false,
                 fmt::format("could not look into {} ({}): leave it where it is, end what keeps it busy or short of "
                             "files and room, and look again",
                             file.string(), check.fault)}};
    if (!check.fault.empty())
        return {{"store", false, fmt::format("{} is damaged ({}): {}", file.string(), check.fault, advice)}};
    std::vector<Finding> findings{{"store", true, fmt::format("{}, {}, sound", file.string(), fileSize(sizeOf(file)))}};
    const Schema& current = currentSchema();
    if (check.applicationId != current.applicationId && (check.applicationId != 0 || check.version != 0))
        findings.push_back({"schema", false, fmt::format("the store is a database of another program: {}", advice)});
    else if (check.version > current.version)
        findings.push_back({"schema", false,
                            fmt::format("version {}, and this program knows versions up to {}: update Quillorn",
                                        check.version, current.version)});
    else if (check.version < current.version)
        findings.push_back({"schema", true,
                            fmt::format("version {}, to become {} at the next start", check.version, current.version)});
    else
        findings.push_back({"schema", true, fmt::format("version {}", check.version)});
    if (!check.answers.empty())
        findings.push_back({"timer", true,
                            fmt::format("{} {}", fmt::join(check.answers, ", "),
                                        check.answers.size() == 1
                                            ? "runs"
                                            : "run at once; \"quillorn timer stop --all\" stops all that runs")});
    return findings;
}

/// What a clock that was ahead has left; it doesn't count. A name may be some minutes ahead, where others were taken.
std::string datesAhead(const std::map<Date, fs::path>& backups, const Settings& settings, Date now) {
    const auto count = std::distance(backups.upper_bound(now + std::chrono::hours{1}), backups.end());
    const Json stored = settings.value(setting("backupLastDate"));
    const auto last = stored.asString() != nullptr ? parseISO8601(*stored.asString()) : std::nullopt;
    std::string text;
    if (count > 0)
        text += fmt::format("; {} of them dated later than now, which don't count", count);
    if (last && *last > now)
        text += fmt::format("; the last one is noted for {}, which is later than now and doesn't count",
                            *stored.asString());
    return text.empty() ? text : text + " (was the clock ahead?)";
}

Finding examineBackups(const fs::path& store, const fs::path& folder, const std::map<Date, fs::path>& backups,
                       SettingsStore& settingsStore, Date now) {
    const Settings settings(settingsStore);
    const std::string ahead = datesAhead(backups, settings, now);
    if (isBackupFolderAccessLost(settingsStore))
        return {"backups", false,
                fmt::format("Quillorn can no longer write to {}. Choose the folder again to restore access; backups go "
                            "to the default folder until then.",
                            settings.text(setting("backupFolderPath")))};
    const std::string advice = "take one by \"quillorn backup\"";
    if (backups.empty())
        return isThere(store)
                   ? Finding{"backups", false, fmt::format("there is none in {}; {}", folder.string(), advice)}
                   : Finding{"backups", true, fmt::format("none yet; they will go to {}", folder.string())};
    const auto later = backups.upper_bound(now);
    if (later == backups.begin())
        return {"backups", false,
                fmt::format("{} in {}, none from before now{}; {}", backups.size(), folder.string(), ahead, advice)};
    const Date last = std::prev(later)->first;
    const auto files = filesOf(store);
    const bool isBehind = std::any_of(files.begin(), files.end(), [&](const fs::path& file) {
        const auto modified = modificationDate(file);
        return modified && *modified > last;
    });
    std::string text =
        fmt::format("{} in {}, the last one {} ago", backups.size(), folder.string(), relativeTime(last, now));
    if (isBehind && now - last > days{7})
        return {"backups", false, text + ahead + "; " + advice};
    text += ahead;
    if (!settings.boolean(setting("backupEnabled")))
        text += "; hourly backups are off";
    return {"backups", true, text};
}

struct SettingsContent {
    /// What is wrong with the file; empty for a sound or a missing one.
    std::string fault{};
    Json::Object values{};
};

SettingsContent readSettings(const fs::path& file) {
    try {
        const Json content = Json::parse(readWhole(openFile(file)));
        if (const Json::Object* values = content.asObject())
            return {.values = *values};
        return {.fault = "it is no JSON object"};
    } catch (const JsonError& error) {
        return {.fault = error.what()};
    } catch (const std::system_error& error) {
        return {.fault = error.code() == std::errc::no_such_file_or_directory ? "" : error.code().message()};
    }
}

/// What is wrong with one entry of the file; empty when nothing is.
std::string faultOf(const std::string& key, const Json& value) {
    const Setting* known = findSetting(key);
    if (known == nullptr)
        return fmt::format("there is no setting {}{}", key, suggestion(key, settingKeys()));
    return isFit(value, *known) ? std::string() : fmt::format("{} is to be {}, and is not", key, describe(*known));
}

std::vector<Finding> examineSettings(const fs::path& file, const SettingsContent& content) {
    if (!content.fault.empty())
        return {{"settings", false,
                 fmt::format("{} can't be read ({}): mend it, or remove it to start with the defaults", file.string(),
                             content.fault)}};
    std::vector<Finding> findings;
    for (const auto& [key, value] : content.values)
        if (const std::string fault = faultOf(key, value); !fault.empty())
            findings.push_back(
                {"settings", false, fmt::format("{}; \"quillorn settings reset {}\" mends it", fault, key)});
    if (findings.empty())
        findings.push_back(
            {"settings", true,
             isThere(file) ? file.string() : fmt::format("no {}, all have their defaults", file.string())});
    return findings;
}

bool isThisMachine(const std::string& host) {
    return host == "localhost" || host.ends_with(".localhost") || host.starts_with("127.") || host == "[::1]";
}

Finding examineAI(SettingsStore& store) {
    if (!AIService::isConfigured(store))
        return {"AI", true, "not configured; aiEndpoint and aiModel say which server and model to ask"};
    const std::string endpoint = Settings(store).text(setting("aiEndpoint"));
    const auto host = HttpClient::hostOf(endpoint);
    if (!host)
        return {"AI", false, fmt::format("aiEndpoint is no web address: {}", endpoint)};
    return {"AI", true,
            fmt::format("configured; the server {} is {}", *host,
                        isThisMachine(*host) ? "on this machine" : "not on this machine: what is asked leaves it")};
}

Finding examinePort(SettingsStore& store) {
    std::int64_t port = 0;
    try {
        port = APIServerOptions::fromSettings(store).port;
    } catch (const std::runtime_error& error) {
        return {"port", false, error.what()};
    }
    if (port < 1 || port > 65535)
        return {"port", false, fmt::format("{} is no port; \"quillorn settings reset apiPort\" mends it", port)};
    switch (probePort(static_cast<std::uint16_t>(port))) {
    case PortUse::free:
        return {"port", true, fmt::format("{} is free", port)};
    case PortUse::quillorn:
        return {"port", true, fmt::format("Quillorn serves on {}", port)};
    case PortUse::other:
        break;
    }
    return {
        "port", false,
        fmt::format("{} is in use by another program; take another one by \"quillorn settings set apiPort N\"", port)};
}

/// The free space where `path` is, or will be.
std::uintmax_t roomAt(fs::path path) {
    while (!isThere(path) && path != path.parent_path())
        path = path.parent_path();
    std::error_code unknown;
    const fs::space_info space = fs::space(path, unknown);
    return unknown ? 0 : space.available;
}

Finding examineRoom(const fs::path& store, const fs::path& backups) {
    const std::uintmax_t needed = leastRoom + 2 * sizeOf(store);
    std::error_code unknown;
    const fs::path temporary = fs::temp_directory_path(unknown);
    if (unknown)
        return {"space", false,
                fmt::format("there is no folder for temporary files ({}): set TMPDIR to one", unknown.message())};
    if (const std::string fault = whyNotWritable(temporary); !fault.empty())
        return {"space", false, fault + "; set TMPDIR to a folder for temporary files"};
    const fs::path places[] = {store.parent_path(), backups, temporary};
    std::uintmax_t least = UINTMAX_MAX;
    for (const fs::path& place : places) {
        const std::uintmax_t room = roomAt(place);
        if (room < needed)
            return {"space", false,
                    fmt::format("{} free at {}, and a backup or restore may need {}: make room", fileSize(room),
                                place.string(), fileSize(needed))};
        least = std::min(least, room);
    }
    return {"space", true, fmt::format("{} free", fileSize(least))};
}

} // namespace

Examination examine(const Paths& paths, const Calendar& calendar, RandomSource& random, SystemLog& log, Date now) {
    const fs::path store = storeFile(paths);
    const fs::path settingsPath = settingsFile(paths);
    const SettingsContent content = readSettings(settingsPath);
    // What is wrong with a broken file is said once, by the finding.
    FileSettings settings(content.fault.empty() ? settingsPath : settingsPath.parent_path() / "none", log);
    const fs::path folder = backupFolder(settings, store);
    const auto backups = backupsIn(folder, calendar);

    std::vector<Finding> findings = examineStore(store, !backups.empty(), random);
    findings.push_back({"SQLite", true, sqliteVersion()});
    findings.push_back(examineBackups(store, folder, backups, settings, now));
    for (Finding& each : examineSettings(settingsPath, content))
        findings.push_back(std::move(each));
    findings.push_back(examinePort(settings));
    findings.push_back(examineAI(settings));
    std::string notificationFault = whyNoNotifications(settings, log);
    findings.push_back({"alerts", true,
                        notificationFault.empty() ? "a server tells when tasks are due"
                                                  : "nobody tells when tasks are due: " + notificationFault});
    findings.push_back(examineRoom(store, folder));
    return {std::move(findings), std::move(notificationFault)};
}

} // namespace quillorn
