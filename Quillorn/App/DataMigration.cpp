#include "App/DataMigration.h"

#include "Models/Settings.h"
#include "Platform/AtomicFile.h"
#include "Platform/Clock.h"
#include "Platform/Date.h"
#include "Platform/Paths.h"
#include "Platform/PropertyList.h"
#include "Platform/SettingsStore.h"
#include "Platform/SystemLog.h"
#include "Store/StoreFiles.h"
#include "Store/WriteLock.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <fmt/core.h>
#include <stdexcept>

namespace quillorn {

namespace fs = std::filesystem;

namespace {

/// The main file last: it is what makes a store of the other two.
constexpr std::array storeSuffixes{"-shm", "-wal", ""};

bool isThere(const fs::path& path) {
    std::error_code unknown;
    return fs::exists(path, unknown);
}

/// As a part of a file's name.
std::string fileSafe(std::string date) {
    std::erase(date, ':');
    return date;
}

/// "Quillorn.store" behind its folder's name.
std::string lastTwo(const fs::path& path) {
    return (path.parent_path().filename() / path.filename()).string();
}

/// The steps of moving a store in, each of which can be repeated by a launch that finds an earlier one killed.
///
/// The new files wait in "pre-sandbox-DATE.incoming", complete as soon as that folder has its name; the old ones are
/// kept in "pre-sandbox-DATE", complete in the same way. Only then do the new ones take their places.
class StoreMove {
  public:
    StoreMove(fs::path source, fs::path destination) : m_source(std::move(source)), m_here(std::move(destination)) {}

    /// The folder that keeps the old store, where there was one.
    std::optional<std::string> run(const std::string& date) {
        fs::path incoming = unfinished().value_or(m_here / ("pre-sandbox-" + date + std::string(incomingEnd)));
        if (!isThere(incoming))
            bringIn(incoming);
        const fs::path kept = incoming.string().substr(0, incoming.string().size() - incomingEnd.size());
        if (!isThere(kept))
            keepOld(kept);
        takePlaces(incoming, kept);
        fs::remove_all(incoming);
        std::error_code isNotEmpty;
        return fs::remove(kept, isNotEmpty) ? std::nullopt : std::optional(kept.filename().string());
    }

    /// Of a launch that was killed.
    std::optional<fs::path> unfinished() const {
        std::error_code unknown;
        for (const auto& entry : fs::directory_iterator(m_here, unknown)) {
            const std::string name = entry.path().filename().string();
            if (name.starts_with("pre-sandbox-") && name.ends_with(incomingEnd))
                return entry.path();
        }
        return std::nullopt;
    }

  private:
    static constexpr std::string_view incomingEnd = ".incoming";

    void bringIn(const fs::path& incoming) const {
        const fs::path partial = m_here / "pre-sandbox.copying";
        fs::remove_all(partial);
        createPrivateFolder(partial);
        for (const char* suffix : storeSuffixes)
            if (const std::string name = std::string(storeName) + suffix; isThere(m_source / name))
                copyFile(m_source / name, partial / name);
        fs::rename(partial, incoming);
    }

    /// By links, so that the store that stands here is whole at every moment. The folder is made also where there is
    /// none, for it says that this step is over.
    void keepOld(const fs::path& kept) const {
        const fs::path partial = m_here / "pre-sandbox.keeping";
        fs::remove_all(partial);
        createPrivateFolder(partial);
        for (const char* suffix : storeSuffixes)
            if (const std::string name = std::string(storeName) + suffix; isThere(m_here / name))
                fs::create_hard_link(m_here / name, partial / name);
        fs::rename(partial, kept);
    }

    void takePlaces(const fs::path& incoming, const fs::path& kept) const {
        for (const char* suffix : storeSuffixes) {
            const std::string name = std::string(storeName) + suffix;
            std::error_code unknown;
            // A log of the old store must never meet the new main file.
            if (isThere(incoming / storeName) && fs::equivalent(m_here / name, kept / name, unknown) && *suffix != '\0')
                fs::remove(m_here / name);
            if (isThere(incoming / name))
                fs::rename(incoming / name, m_here / name);
        }
    }

    fs::path m_source;
    fs::path m_here;
};

std::size_t copyBackups(const fs::path& source, const fs::path& destination, SystemLog& log) {
    std::size_t copied = 0;
    std::error_code unknown;
    for (const auto& entry : fs::directory_iterator(source, unknown)) {
        const fs::path target = destination / entry.path().filename();
        if (!entry.is_regular_file(unknown) || isThere(target))
            continue;
        try {
            createPrivateFolder(destination);
            copyFile(entry.path(), target);
            ++copied;
        } catch (const std::exception& error) {
            log.log(fmt::format("SandboxMigration: copy {} failed: {}", target.filename().string(), error.what()));
        }
    }
    return copied;
}

bool isOfPlatform(std::string_view key) {
    const auto begins = [&](std::string_view prefix) { return key.starts_with(prefix); };
    return begins("NS") || begins("com_apple_") || begins("CK");
}

std::size_t takeSettings(const fs::path& file, SettingsStore& store, SystemLog& log) {
    std::size_t taken = 0;
    std::string dropped;
    for (auto& [key, value] : readPropertyList(file)) {
        const Setting* known = findSetting(key);
        if (isOfPlatform(key) || store.storedValue(key))
            continue;
        if (known != nullptr && isOfType(value, known->type)) {
            store.set(key, value);
            ++taken;
        } else {
            dropped += (dropped.empty() ? "" : ", ") + key;
        }
    }
    if (!dropped.empty())
        log.log("SandboxMigration: left out settings that mean nothing here: " + dropped);
    return taken;
}

} // namespace

std::string DataMigration::Result::text() const {
    return fmt::format("store {}{}, {} backups, {} settings", copiedStore ? "copied" : "not copied",
                       keptIn ? " (the one here is kept in " + *keptIn + ")" : "", backups, settings);
}

void DataMigration::migrateOldLocation() const {
    const auto home = paths.home();
    if (!home)
        return;
    const fs::path containers = *home / "Library" / "Containers";
    const fs::path support = fs::path("Data") / "Library" / "Application Support";
    const fs::path source = containers / "com.vantory.app" / support / "Vantory.store";
    const fs::path target = containers / "com.quillorn.app" / support / storeName;
    if (!isThere(source) || isThere(target))
        return;
    std::error_code ignored;
    fs::create_directories(target.parent_path(), ignored);
    for (const char* suffix : storeSuffixes) {
        const fs::path from = source.string() + suffix;
        const fs::path to = target.string() + suffix;
        if (!isThere(from) || isThere(to))
            continue;
        try {
            copyFile(from, to);
            log.log(lastTwo(from) + " → " + lastTwo(to));
        } catch (const std::exception& error) {
            log.log(fmt::format("Migration failed for {}: {}", from.filename().string(), error.what()));
        }
    }
}

void DataMigration::migrateFromUnsandboxedLocation() const {
    Settings values(settings);
    const Setting& isDone = setting("didMigrateFromUnsandboxedLocation");
    if (values.boolean(isDone))
        return;
    const auto home = paths.accountHome() ? paths.accountHome() : paths.home();
    const fs::path here = paths.applicationSupport() / "Quillorn";
    try {
        createPrivateFolder(here);
        // Of two first launches one waits here, and then finds that all is done.
        WriteLock lock((here / storeName).string() + "-lock");
        const WriteLock::Guard guard = lock.acquire();
        if (values.boolean(isDone))
            return;
        Result result;
        if (home) {
            const fs::path library = *home / "Library";
            const fs::path source = library / "Application Support" / "Quillorn";
            std::error_code unknown;
            StoreMove move(source, here);
            const bool isElsewhere = !fs::equivalent(source, here, unknown);
            if (move.unfinished() || (isElsewhere && isThere(source / storeName))) {
                if (isOpenElsewhere(here / storeName))
                    return log.log("SandboxMigration: waits for a launch that finds the store closed");
                result.keptIn = move.run(fileSafe(formatISO8601(clock.now())));
                result.copiedStore = true;
            }
            if (isElsewhere)
                result.backups = copyBackups(source / "Backups", here / "Backups", log);
            const Setting& hasSettings = setting("didMigratePrefsFromSandboxContainer");
            const fs::path preferences = library / "Preferences" / "com.quillorn.app.plist";
            if (!values.boolean(hasSettings) && isThere(preferences)) {
                result.settings = takeSettings(preferences, settings, log);
                values.set(hasSettings, true);
            }
        }
        values.set(isDone, true);
        // On most machines there was nothing, and nobody wants to read of it.
        if (result.copiedStore || result.backups > 0 || result.settings > 0)
            log.log("SandboxMigration: " + result.text());
    } catch (const std::exception& error) {
        log.log(fmt::format("SandboxMigration: {}", error.what()));
    }
}

} // namespace quillorn
