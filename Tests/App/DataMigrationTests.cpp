#include "App/DataMigration.h"

#include "Platform/FileContent.h"
#include "Support/FakeClock.h"
#include "Support/FakePaths.h"
#include "Support/MemorySettings.h"
#include "Support/RecordingLog.h"
#include "Support/TemporaryFolder.h"
#include "Support/TestStore.h"

#include <fstream>
#include <gmock/gmock.h>
#include <map>

namespace quillorn {
namespace {

namespace fs = std::filesystem;
using Files = std::map<std::string, std::string>;

struct DataMigrationTest : testing::Test {
    void write(const fs::path& file, const std::string& content) const {
        fs::create_directories(file.parent_path());
        std::ofstream(file) << content;
    }
    void writeAll(const fs::path& below, const Files& files) const {
        for (const auto& [name, content] : files)
            write(below / name, content);
    }
    /// All files below a folder, with their content; but the lock.
    Files read(const fs::path& below) const {
        Files files;
        for (const auto& entry : fs::recursive_directory_iterator(below))
            if (entry.is_regular_file() && entry.path().extension() != ".store-lock")
                files[entry.path().lexically_relative(below).string()] = readWhole(openFile(entry.path()));
        return files;
    }

    TemporaryFolder folder;
    FakePaths paths{folder.path()};
    MemorySettings settings;
    RecordingLog log;
    FakeClock clock;
    DataMigration migration{paths, settings, log, clock};
    const fs::path home = folder.path();
    const fs::path account = home / "account" / "Library";
    const fs::path source = account / "Application Support" / "Quillorn";
    const fs::path here = home / "share" / "Quillorn";
    const std::string kept = "pre-sandbox-2026-01-15T120000Z";
};

TEST_F(DataMigrationTest, theOldLocationIsCopiedUnlessSomethingIsThere) {
    const std::string support = "Library/Containers/com.vantory.app/Data/Library/Application Support/Vantory.store";
    const fs::path target = home / "Library/Containers/com.quillorn.app/Data/Library/Application Support";
    write(home / (support + "-wal"), "log");
    migration.migrateOldLocation();
    EXPECT_FALSE(fs::exists(target)) << "a log alone is no store";
    write(home / support, "store");
    for (const char* content : {"changed meanwhile", "once more"}) {
        migration.migrateOldLocation();
        EXPECT_EQ(read(target), (Files{{"Quillorn.store", "store"}, {"Quillorn.store-wal", "log"}}));
        write(home / support, content);
    }
    EXPECT_THAT(log.lines(), testing::ElementsAre("Application Support/Vantory.store-wal → Application "
                                                  "Support/Quillorn.store-wal",
                                                  "Application Support/Vantory.store → Application "
                                                  "Support/Quillorn.store"));
}

TEST_F(DataMigrationTest, everyLaunchThatWasKilledIsCompletedByTheNext) {
    const Files old{{"Quillorn.store", "old"}, {"Quillorn.store-wal", "old log"}};
    const std::string incoming = kept + ".incoming/";
    struct State {
        const char* what;
        Files here;
        bool isKept;
        bool keepsAsLinks = false;
    };
    const State states[] = {
        {"nothing here", {}, false},
        {"a store here", old, true},
        {"killed while it copied",
         {{"Quillorn.store", "old"},
          {"Quillorn.store-wal", "old log"},
          {"pre-sandbox.copying/Quillorn.store-wal", "ne"}},
         true},
        {"copied",
         {{"Quillorn.store", "old"},
          {"Quillorn.store-wal", "old log"},
          {incoming + "Quillorn.store", "new"},
          {incoming + "Quillorn.store-shm", "new shm"},
          {"pre-sandbox.keeping/Quillorn.store", "old"}},
         true},
        {"kept",
         {{"Quillorn.store", "old"},
          {"Quillorn.store-wal", "old log"},
          {incoming + "Quillorn.store", "new"},
          {incoming + "Quillorn.store-shm", "new shm"}},
         true,
         true},
        {"half in place",
         {{"Quillorn.store", "old"},
          {"Quillorn.store-shm", "new shm"},
          {incoming + "Quillorn.store", "new"},
          {kept + "/Quillorn.store", "old"},
          {kept + "/Quillorn.store-wal", "old log"}},
         true},
    };
    for (const State& state : states) {
        SCOPED_TRACE(state.what);
        fs::remove_all(home / "share");
        writeAll(source, {{"Quillorn.store", "new"}, {"Quillorn.store-shm", "new shm"}});
        writeAll(here, state.here);
        if (state.keepsAsLinks) {
            fs::create_directories(here / kept);
            for (const auto& [name, content] : old)
                fs::create_hard_link(here / name, here / kept / name);
        }
        settings.remove("didMigrateFromUnsandboxedLocation");
        migration.migrateFromUnsandboxedLocation();
        Files expected{{"Quillorn.store", "new"}, {"Quillorn.store-shm", "new shm"}};
        if (state.isKept)
            for (const auto& [name, content] : old)
                expected[kept + "/" + name] = content;
        EXPECT_EQ(read(here), expected);
        writeAll(source, {{"Quillorn.store", "newer"}});
        migration.migrateFromUnsandboxedLocation();
        EXPECT_EQ(read(here), expected) << "it happens once";
    }
}

TEST_F(DataMigrationTest, backupsAndSettingsComeAlong) {
    writeAll(source / "Backups", {{"a", "theirs"}, {"b", "theirs"}});
    writeAll(here / "Backups", {{"a", "mine"}});
    settings.set("apiPort", Json(4000));
    write(account / "Preferences/com.quillorn.app.plist",
          "<plist version=\"1.0\"><dict><key>apiPort</key><integer>1</integer><key>aiModel</key><string>m</string>"
          "<key>backupEnabled</key><false/><key>notificationHour</key><string>no</string><key>NSx</key><true/>"
          "<key>backupLastDate</key><date>2020-01-02T03:04:05Z</date></dict></plist>");
    migration.migrateFromUnsandboxedLocation();
    EXPECT_EQ(read(here), (Files{{"Backups/a", "mine"}, {"Backups/b", "theirs"}}));
    const std::map<std::string, std::optional<Json>> expected{{"apiPort", Json(4000)},
                                                              {"aiModel", Json("m")},
                                                              {"backupEnabled", Json(false)},
                                                              {"notificationHour", {}},
                                                              {"NSx", {}},
                                                              {"backupLastDate", Json("2020-01-02T03:04:05Z")}};
    for (const auto& [key, value] : expected)
        EXPECT_EQ(settings.storedValue(key), value) << key;
    write(account / "Preferences/com.quillorn.app.plist", "damaged");
    settings.remove("didMigrateFromUnsandboxedLocation");
    settings.remove("didMigratePrefsFromSandboxContainer");
    migration.migrateFromUnsandboxedLocation();
    EXPECT_THAT(log.lines().back(), testing::HasSubstr("no property list"));
}

} // namespace
} // namespace quillorn
