#include "Platform/Leftovers.h"
#include "Services/BackupError.h"
#include "Services/BackupFolder.h"
#include "Services/BackupTest.h"
#include "Services/StoreSnapshot.h"
#include "Support/Threads.h"

namespace quillorn {
namespace {

TEST_F(BackupTest, keepsACompressedCopyOfTheStore) {
    addTag("kept");
    std::vector<bool> seen;
    const Observation state = service->observe([&] { seen.push_back(service->isBackingUp()); });
    service->runBackup(true);
    service->runBackup(true); // while one is under way it does nothing
    EXPECT_TRUE(service->isBackingUp());
    finish();
    EXPECT_THAT(seen, ElementsAre(true, false));
    EXPECT_THAT(outcome(), testing::MatchesRegex("Backed up [0-9]+ (bytes|KB)"));
    EXPECT_EQ(service->lastBackupDate(), clock.now());
    EXPECT_EQ(settings.storedValue("backupLastDate"), Json("2026-01-15T12:00:00Z"));
    EXPECT_EQ(makeService()->lastBackupDate(), clock.now());

    ASSERT_THAT(backupNames(), ElementsAre("Quillorn-20260115-1300.store.lzfse"));
    const fs::path kept = backups() / backupNames()[0], copy = folder / "copy.store";
    EXPECT_EQ(fs::status(kept).permissions(), fs::perms(0600));
    EXPECT_EQ(fs::status(backups()).permissions(), fs::perms(0700));
    EXPECT_TRUE(fs::is_empty(temporary));
    writeFile(copy, decompressLZFSE(readFile(kept), 10'000'000).view());
    EXPECT_TRUE(isHealthySnapshot(copy));
    EXPECT_EQ(ForeignConnection(copy).text("SELECT name FROM Tag"), "kept");
    EXPECT_FALSE(fs::exists(copy.string() + "-wal"));

    // The same minute and content have the same file.
    clock.advance(59s);
    backUp();
    EXPECT_EQ(backupNames().size(), 1U);
    clock.advance(1s);
    backUp();
    EXPECT_EQ(backupNames().size(), 2U);
}

TEST_F(BackupTest, replacesNothingAndFollowsNoLinks) {
    const auto path = [&](int minute) {
        return backups() / ("Quillorn-20260115-130" + std::to_string(minute) + ".store.lzfse");
    };
    fs::create_directories(path(1));
    writeFile(folder / "mine", "mine");
    fs::create_symlink(folder / "mine", path(2));
    fs::create_symlink(folder / "nowhere", path(3));
    for (const int expected : {0, 4, 5}) {
        addTag("another");
        backUp();
        EXPECT_EQ(service->lastBackupFile(), path(expected));
    }
    EXPECT_EQ(readFile(folder / "mine"), "mine");
    EXPECT_FALSE(fs::exists(folder / "nowhere"));
    restore(path(0));
    EXPECT_EQ(service->lastSafetySnapshot(), path(5)) << "that is what was there";
    restore(path(0));
    EXPECT_EQ(service->lastSafetySnapshot(), path(6));
    restore(path(5));
    EXPECT_EQ(tags().size(), 3U);
}

TEST_F(BackupTest, sweepsUpBehindTheKilled) {
    const fs::path partial = backups() / ".Quillorn-20260115-1200.store.lzfse.abcdef",
                   other = backups() / ".notes.txt.abcdef",
                   left = temporary / "Quillorn-00000000-0000-4000-8000-000000000000",
                   usedFolder = temporary / "Quillorn-00000000-0000-4000-8000-000000000001",
                   notOurs = temporary / "Quillorn-x";
    for (const fs::path& made : {left, usedFolder, notOurs, backups()})
        fs::create_directories(made);
    const fs::path usedPartial = backups() / ".Quillorn-20260115-1200.store.lzfse.ghijkl";
    for (const fs::path& file : {partial, usedPartial, other, left / "source.store"})
        writeFile(file, "x");
    const FileDescriptor first(::open(usedPartial.c_str(), O_RDONLY)), second(::open(usedFolder.c_str(), O_RDONLY));
    ASSERT_TRUE(claim(first) && claim(second));
    backUp();
    for (const auto& [path, stays] : {std::pair(partial, false),
                                      {left, false},
                                      {usedPartial, true},
                                      {usedFolder, true},
                                      {other, true},
                                      {notOurs, true}})
        EXPECT_EQ(fs::exists(path), stays) << path;
}

TEST_F(BackupTest, doesNotMissWhatChangesWhileItIsTaken) {
    addTag("before");
    service->runBackup(true);
    clock.advance(1h);
    finish();
    for (const char* suffix : {"", "-wal", "-shm"})
        setModified(file().string() + suffix, clock.now() - 30min);
    backUp(false);
    EXPECT_THAT(outcome(), StartsWith("Backed up"));
    backUp(false);
    EXPECT_THAT(outcome(), StartsWith("Skipped"));
}

TEST_F(BackupTest, isSkippedWhileNothingChanges) {
    const Date last = clock.now() - 2h;
    const auto touch = [&](int store, int sharedMemory, int ahead) {
        setModified(file(), last + std::chrono::seconds(store));
        setModified(file().string() + "-shm", last + std::chrono::seconds(sharedMemory));
        setModified(file().string() + "-wal", last + std::chrono::seconds(ahead));
    };
    addTag("so that there is a log");
    const struct {
        bool isUnknown, force;
        std::array<int, 3> modified;
        bool isSkipped;
    } cases[] = {
        {true, false, {-9, -9, -9}, false}, {false, false, {-9, -9, -9}, true}, {false, false, {0, 0, 0}, true},
        {false, true, {-9, -9, -9}, false}, {false, false, {1, -9, -9}, false}, {false, false, {-9, 1, -9}, false},
        {false, false, {-9, -9, 1}, false},
    };
    for (const auto& [isUnknown, force, modified, isSkipped] : cases) {
        SCOPED_TRACE(testing::PrintToString(modified));
        // A date that lies ahead is of no use either.
        settings.set("backupLastDate", formatISO8601(isUnknown ? clock.now() + 24h : last));
        touch(modified[0], modified[1], modified[2]);
        service = makeService();
        backUp(force);
        EXPECT_THAT(outcome(), StartsWith(isSkipped ? "Skipped — no changes since last backup" : "Backed up"));
        EXPECT_EQ(service->lastBackupDate(), isSkipped ? last : clock.now());
    }
    // A store that is not there.
    settings.remove("backupLastDate");
    letGoOfTheFile();
    fs::remove(file());
    backUp();
    EXPECT_EQ(outcome(), "Skipped — no store yet");
    EXPECT_FALSE(service->lastBackupDate());
}

TEST_F(BackupTest, runsByTheClock) {
    EXPECT_EQ(queue.timerCount(), 0U);
    service = makeService(true);
    const auto runsWithin = [&](std::chrono::milliseconds time) {
        const auto before = service->lastBackupDate();
        setModified(file(), clock.now() + 24h); // there is always something new
        queue.advance(time);
        finish();
        return service->lastBackupDate() != before;
    };
    EXPECT_FALSE(runsWithin(29'999ms));
    EXPECT_TRUE(runsWithin(1ms));
    EXPECT_FALSE(runsWithin(1h - 30s - 1ms));
    EXPECT_TRUE(runsWithin(1ms));
    settings.set("backupEnabled", false);
    EXPECT_FALSE(runsWithin(5h));
    backUp();
    EXPECT_THAT(outcome(), StartsWith("Backed up")) << "by hand";
    settings.remove("backupEnabled");
    EXPECT_TRUE(runsWithin(1h));
    settings.set("backupLastDate", formatISO8601(clock.now() + 30min));
    EXPECT_FALSE(runsWithin(1h)) << "another process has one of half an hour ago";
    EXPECT_TRUE(runsWithin(1h)) << "which has ended since";
    // A young backup spares the first one.
    for (const auto age : {3599s, 3600s}) {
        settings.set("backupLastDate", formatISO8601(clock.now() - age + 30s));
        service = makeService(true);
        EXPECT_EQ(runsWithin(30s), age == 3600s);
    }
    service.reset();
    EXPECT_EQ(queue.timerCount(), 0U);
    EXPECT_THAT(queue.failures(), IsEmpty());
}

TEST_F(BackupTest, saysWhatWentWrong) {
    const std::pair<std::function<void()>, std::string> cases[] = {
        {[&] { writeFile(file(), std::string(5000, 'x')); }, "! Snapshot failed: file is not a database"},
        {[&] {
             fs::remove(file());
             fs::create_directory(file());
         },
         "! Could not open store: "},
        {[&] { writeFile(backups(), "a file"); }, "! Can't write " + (backups() / "Quillorn-").string()},
        {[&] { fs::remove(temporary); }, "! Can't make a temporary folder: "},
    };
    addTag("x");
    settings.set("backupLastDate", "2026-01-01T00:00:00Z");
    letGoOfTheFile();
    const std::string good = readFile(file());
    for (const auto& [prepare, words] : cases) {
        fs::remove_all(file());
        fs::remove_all(backups());
        fs::create_directory(temporary);
        writeFile(file(), good);
        prepare();
        backUp();
        EXPECT_THAT(outcome(), HasSubstr(words));
        EXPECT_EQ(formatISO8601(*service->lastBackupDate()), "2026-01-01T00:00:00Z");
        EXPECT_TRUE(!fs::exists(temporary) || fs::is_empty(temporary));
    }
    fs::create_directory(temporary);
    // A skip clears the error; settings that can't be written take nothing from the backup.
    fs::remove_all(backups());
    settings.failsToWrite = true;
    backUp();
    EXPECT_THAT(outcome(), StartsWith("Backed up"));
    EXPECT_TRUE(log.contains("settings"));
    for (const char* suffix : {"", "-wal", "-shm"})
        setModified(file().string() + suffix, clock.now());
    backUp(false);
    EXPECT_EQ(outcome(), "Skipped — no changes since last backup");
}

TEST_F(BackupTest, aCopyWithFaultsIsNotKept) {
    addTag("a");
    const std::string before = readFile(backup());
    ForeignConnection(file()).execute("CREATE TABLE odd (x         ); INSERT INTO odd VALUES (NULL)");
    letGoOfTheFile();
    std::string bytes = readFile(file());
    bytes.replace(bytes.find("x         )"), 11, "x NOT NULL)");
    writeFile(file(), bytes);
    const fs::path old = backups() / "Quillorn-20200101-0000.store.lzfse";
    writeFile(old, "");
    backUp();
    EXPECT_EQ(outcome(), "! Snapshot failed integrity check — backup aborted");
    EXPECT_TRUE(readFile(backups() / backupNames()[1]) == before);
    EXPECT_TRUE(fs::exists(old)) << "a pass that fails prunes nothing";
    EXPECT_FALSE(isHealthySnapshot(folder / "missing"));
    writeFile(folder / "text", "Dear diary");
    EXPECT_FALSE(isHealthySnapshot(folder / "text"));
}

TEST_F(BackupTest, thinsOutTheFolder) {
    fs::create_directory(backups());
    const auto named = [](const char* minute) { return "Quillorn-" + std::string(minute) + ".store.lzfse"; };
    std::vector<std::string> kept{named("20260115-0100"), named("20260110-1400"), named("20270101-0000")};
    // None of ours:
    for (const char* minute :
         {"notadate", "20250230-1200", "20250101-2400", "20250101-1260", "2025010-11200", "20250103-1200 "})
        kept.push_back(named(minute));
    for (const char* name : {"other.store.lzfse", "Quillorn-20250102-1200.store.lzfsx", "Quillorn-20250101-1200.store",
                             "Quillorn-.store.lzfse"})
        kept.emplace_back(name);
    for (const auto& name : kept)
        writeFile(backups() / name, "");
    for (const char* minute : {"20260110-1359", "20250101-1200"})
        writeFile(backups() / named(minute), "");
    kept.push_back(named("20250104-1200"));
    fs::create_directory(backups() / kept.back());
    backUp();
    EXPECT_THAT(outcome(), testing::EndsWith(", pruned 2 old"));
    kept.push_back(named("20260115-1300"));
    EXPECT_THAT(backupNames(), testing::UnorderedElementsAreArray(kept));
    EXPECT_EQ(pruneBackups(folder / "missing", clock.now(), calendar), 0U);
    // A name is the first of two instants that have it, and the later of none.
    EXPECT_EQ(dateOfBackup(named("20261025-0230"), calendar), date("2026-10-25T00:30:00Z"));
    EXPECT_EQ(dateOfBackup(named("20260329-0230"), calendar), date("2026-03-29T01:30:00Z"));
    EXPECT_EQ(backupFileName(date("2026-10-25T01:30:00Z"), calendar), named("20261025-0230"));
}

TEST_F(BackupTest, goesWhereTheUserWants) {
    const fs::path mine = folder / "mine";
    EXPECT_EQ(service->backupFolderURL(), backups());
    EXPECT_THROW(service->setBackupFolder(mine), BackupError) << "it is not there";
    EXPECT_THROW(service->setBackupFolder("."), BackupError) << "it is relative";
    EXPECT_THROW(service->setBackupFolder(file()), BackupError) << "it is a file";
    EXPECT_FALSE(service->isBackupFolderAccessLost());
    fs::create_directory(mine);
    service->setBackupFolder(mine);
    EXPECT_EQ(service->backupFolderURL(), mine);
    EXPECT_FALSE(service->isBackupFolderAccessLost());
    backUp();
    EXPECT_EQ(std::distance(fs::directory_iterator(mine), {}), 1);
    for (const auto& [chosen, isLost] : {std::pair(mine / "new", false), {folder / "no/such", true}, {".", true}}) {
        settings.set("backupFolderPath", chosen.string());
        EXPECT_EQ(service->isBackupFolderAccessLost(), isLost) << chosen;
        EXPECT_EQ(service->backupFolderURL(), isLost ? backups() : chosen);
    }
    settings.failsToWrite = true;
    EXPECT_THROW(service->setBackupFolder(mine), std::runtime_error);
}

TEST_F(BackupTest, isBroughtToItsEndWhenNobodyWaitsForIt) {
    addTag("a");
    service->runBackup(true);
    service.reset();
    background = std::make_unique<Background>(queue);
    EXPECT_EQ(backupNames().size(), 1U);
    queue.runPosted(); // the result has nobody to go to
    service = makeService();
    // And a restore beside a backup.
    service->runBackup(true);
    service->restoreFromFile(backups() / backupNames()[0]);
    service.reset();
    background.reset();
    EXPECT_THAT(tags(), ElementsAre("a"));
    EXPECT_TRUE(fs::is_empty(temporary));
}

} // namespace
} // namespace quillorn
