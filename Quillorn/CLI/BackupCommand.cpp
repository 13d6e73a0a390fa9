#include "CLI/Commands.h"
#include "CLI/Output.h"
#include "CLI/ProgressLine.h"
#include "CLI/Session.h"
#include "CLI/Words.h"
#include "Models/Formatters.h"
#include "Models/Settings.h"
#include "Platform/Leftovers.h"
#include "Platform/TemporaryDirectory.h"
#include "Platform/Terminal.h"
#include "Platform/TerminationSignals.h"
#include "Services/BackupError.h"
#include "Services/BackupFolder.h"
#include "Services/BackupRetention.h"
#include "Services/BackupService.h"
#include "Services/StoreSnapshot.h"

#include <algorithm>
#include <cstdio>
#include <fmt/core.h>
#include <iostream>
#include <stdexcept>
#include <unistd.h>

namespace quillorn {

namespace fs = std::filesystem;

namespace {

/// Begins something, and returns when the service has come to its end.
template <class Start>
void runToTheEnd(Session& session, const char* what, const Start& start) {
    if (session.app().runMode() != RunMode::normal)
        throw std::runtime_error("there is no store to back up or to restore in demo mode");
    BackupService& service = session.app().backupService();
    ProgressLine progress;
    int seconds = 0;
    const auto timer = session.mainQueue().every(std::chrono::seconds(1),
                                                 [&] { progress.show(fmt::format("{}… {} s", what, ++seconds)); });
    const Observation state = service.observe([&] {
        if (!service.isBackingUp() && !service.isRestoring())
            session.mainQueue().stop();
    });
    start(service);
    session.mainQueue().run();
    session.mainQueue().cancel(timer);
    if (service.lastError())
        throw std::runtime_error(*service.lastError());
}

/// What `quillorn backups` shows of a file.
struct Listed {
    fs::path file;
    Date date;
    std::uintmax_t size = 0;
    std::string_view tier;
    /// Absent for one that nobody has looked into; empty for a sound one.
    std::optional<std::string> fault;
};

std::string_view tierName(BackupTier tier) {
    switch (tier) {
    case BackupTier::recent:
        return "recent";
    case BackupTier::daily:
        return "daily";
    case BackupTier::weekly:
        return "weekly";
    case BackupTier::none:
        return "none";
    }
    return "";
}

/// Newest first.
std::vector<Listed> list(const fs::path& folder, Date now, const Calendar& calendar) {
    std::map<Date, fs::path> files;
    if (std::error_code unknown; fs::exists(folder, unknown))
        files = listBackups(folder, calendar);
    const std::vector<Date> pruned = datesToPrune(datesOf(files), now, calendar);
    std::vector<Listed> listed;
    for (auto entry = files.rbegin(); entry != files.rend(); ++entry) {
        const auto& [date, file] = *entry;
        const bool goes = std::binary_search(pruned.begin(), pruned.end(), date);
        std::error_code unknown;
        const std::uintmax_t size = fs::file_size(file, unknown);
        listed.push_back(
            {file, date, unknown ? 0 : size, tierName(goes ? BackupTier::none : backupTier(date, now)), {}});
    }
    return listed;
}

std::string faultOf(const fs::path& backup, RandomSource& random) {
    const TemporaryDirectory temporary(random);
    try {
        unpackBackup(backup, temporary / "backup.store");
    } catch (const BackupError& error) {
        return error.what();
    }
    return "";
}

void printList(const fs::path& folder, const std::vector<Listed>& listed) {
    Json::Array array;
    for (const Listed& each : listed) {
        Json::Object object{{"file", each.file.string()},
                            {"date", formatISO8601(each.date)},
                            {"size", static_cast<std::int64_t>(each.size)},
                            {"tier", each.tier}};
        if (each.fault) {
            object.emplace("isSound", each.fault->empty());
            if (!each.fault->empty())
                object.emplace("fault", *each.fault);
        }
        array.emplace_back(std::move(object));
    }
    printJson(Json::Object{{"folder", folder.string()}, {"backups", std::move(array)}});
}

void printTable(const fs::path& folder, const std::vector<Listed>& listed, Date now) {
    fmt::print("{}\n", shown(folder.string()));
    if (listed.empty())
        fmt::print("  No backups\n");
    for (const Listed& each : listed)
        fmt::print("  {}  {:>10}  {:>9}  {:<7} {}\n", shown(each.file.filename().string()),
                   relativeTime(each.date, now), fileSize(each.size), each.tier,
                   !each.fault           ? ""
                   : each.fault->empty() ? "sound"
                                         : shown(*each.fault));
}

/// Whether the user agrees, asked on the terminal.
bool confirm(const fs::path& file) {
    fmt::print(stderr,
               "Replace all current data?\n\n"
               "Restoring “{}” replaces your current clients, projects, tasks, notes, and time entries. Your current "
               "data is snapshotted to the backup folder first, so you can undo this.\n\n"
               "Restore? [y/N] ",
               textFor(stderr, file.filename().string()));
    std::string answer;
    std::getline(std::cin, answer);
    return answer == "y" || answer == "Y" || answer == "yes";
}

} // namespace

ExitStatus backUp(bool json, const ProcessInfo& process) {
    const TerminationSignals signals(endBySignal);
    Session session(process);
    if (session.hasFailed())
        return ExitStatus::failure;
    runToTheEnd(session, "Backing up", [](BackupService& service) { service.runBackup(true); });
    const BackupService& service = session.app().backupService();
    const auto& file = service.lastBackupFile();
    if (json)
        printJson(Json::Object{{"result", *service.lastResult()}, {"file", file ? Json(file->string()) : Json()}});
    else
        fmt::print("{}{}\n", *service.lastResult(), file ? "\n" + shown(file->string()) : "");
    return ExitStatus::success;
}

ExitStatus listBackups(bool json, bool check) {
    const TerminationSignals signals(endBySignal);
    StandardErrorLog log;
    SystemRandom random;
    const auto paths = systemPaths();
    FileSettings settings(settingsFile(*paths), log);
    const Calendar calendar(currentTimeZone(), currentLocale());
    const Date now = SystemClock().now();
    const fs::path folder = backupFolder(settings, storeFile(*paths));
    std::vector<Listed> listed = list(folder, now, calendar);
    bool areSound = true;
    if (check) {
        ProgressLine progress;
        for (std::size_t i = 0; i < listed.size(); ++i) {
            progress.show(fmt::format("Looking into {} of {}", i + 1, listed.size()));
            listed[i].fault = faultOf(listed[i].file, random);
            areSound = areSound && listed[i].fault->empty();
        }
    }
    json ? printList(folder, listed) : printTable(folder, listed, now);
    return areSound ? ExitStatus::success : ExitStatus::failure;
}

ExitStatus restore(const std::string& file, bool confirmed, const ProcessInfo& process) {
    std::error_code unknown;
    if (!fs::exists(file, unknown))
        throw std::runtime_error(fmt::format("there is no file {}", file));
    if (!confirmed && ::isatty(STDIN_FILENO) != 1) {
        fmt::print(stderr,
                   "quillorn: restoring replaces all current data; without a terminal to ask on it needs --yes\n");
        return ExitStatus::usage;
    }
    if (!confirmed && !confirm(file)) {
        fmt::print(stderr, "Cancelled\n");
        return ExitStatus::failure;
    }
    const TerminationSignals signals(endBySignal);
    Session session(process);
    if (session.hasFailed())
        return ExitStatus::failure;
    runToTheEnd(session, "Restoring", [&](BackupService& service) { service.restoreFromFile(file); });
    const BackupService& service = session.app().backupService();
    fmt::print("{}\n", shown(*service.lastResult()));
    if (const auto& snapshot = service.lastSafetySnapshot())
        fmt::print("To undo this: quillorn restore {}\n", shown(quotedForShell(snapshot->string())));
    return ExitStatus::success;
}

} // namespace quillorn
