#include "App/QuillornApp.h"

#include "API/APIServer.h"
#include "Models/Client.h"
#include "Models/Settings.h"
#include "Platform/NotificationCenter.h"
#include "Platform/Text.h"
#include "Store/ModelContext.h"
#include "Support/FakeClock.h"
#include "Support/FakePaths.h"
#include "Support/FixedRandom.h"
#include "Support/ManualQueue.h"
#include "Support/MemorySettings.h"
#include "Support/RecordingLog.h"
#include "Support/TemporaryFolder.h"

#include <filesystem>
#include <gtest/gtest.h>
#include <sqlite3.h>

namespace quillorn {
namespace {

namespace fs = std::filesystem;

class QuillornAppTest : public testing::Test {
  protected:
    std::unique_ptr<QuillornApp> launch(const ProcessInfo& process = {}) {
        return std::make_unique<QuillornApp>(
            AppEnvironment{clock, random, log, notifications, mainQueue, settings, paths, text, "1.2.3"}, process);
    }
    fs::path storeFile() const { return paths.applicationSupport() / "Quillorn" / "Quillorn.store"; }
    void writeStoreFile(std::string_view content) const {
        fs::create_directories(storeFile().parent_path());
        writeFile(storeFile(), content);
    }
    /// Runs the main queue until the server has said how its start went.
    void waitForServer(QuillornApp& app) {
        while (!app.apiServer().isRunning() && !app.apiServer().lastError())
            mainQueue.runPosted();
    }

    TemporaryFolder folder;
    FakeClock clock;
    FixedRandom random;
    RecordingLog log;
    NotificationCenter notifications;
    ManualQueue mainQueue{clock};
    MemorySettings settings;
    FakePaths paths{folder.path()};
    Text text{"en_US"};
};

std::uint64_t clientCount(ModelContainer& container) {
    ModelContext context(container);
    return context.fetch<Client>().size();
}

void addClient(ModelContainer& container) {
    ModelContext context(container);
    context.insert<Client>(Client::Arguments{.name = "Acme"}, Date{});
    context.save();
}

TEST_F(QuillornAppTest, theFlagsDecideTheRunMode) {
    struct Case {
        ProcessInfo process;
        RunMode mode;
        std::vector<std::string> lines;
    };
    const std::string demoLine = "Quillorn launch: isDemo=true isTesting=false";
    const std::string testLine = "Quillorn launch: isDemo=false isTesting=true";
    const Case cases[] = {
        {{{}, {}}, RunMode::normal, {}},
        {{{"-QUILLORN_DEMO"}, {}}, RunMode::demo, {demoLine}},
        {{{"serve", "-QUILLORN_DEMO"}, {{"QUILLORN_DEMO", "0"}}}, RunMode::demo, {demoLine}},
        {{{"-QUILLORN_DEMO=1"}, {}}, RunMode::normal, {}},
        {{{}, {{"QUILLORN_DEMO", "1"}}}, RunMode::demo, {demoLine}},
        {{{}, {{"QUILLORN_DEMO", "true"}}}, RunMode::normal, {}},
        {{{}, {{"XCTestConfigurationFilePath", ""}}}, RunMode::test, {testLine}},
        {{{"-QUILLORN_DEMO"}, {{"XCTestConfigurationFilePath", "x"}}},
         RunMode::test,
         {"Quillorn launch: isDemo=true isTesting=true"}},
    };
    for (const Case& each : cases) {
        log.clear();
        const auto app = launch(each.process);
        EXPECT_EQ(app->runMode(), each.mode);
        EXPECT_EQ(log.lines(), each.lines);
        EXPECT_EQ(app->container().isInMemory(), each.mode != RunMode::normal);
        EXPECT_FALSE(app->launchFailureMessage());
    }
}

TEST_F(QuillornAppTest, notificationDefaultsAreThereInEveryMode) {
    launch({{"-QUILLORN_DEMO"}, {}});
    EXPECT_EQ(settings.value("notificationsEnabled"), Json(true));
    EXPECT_EQ(settings.value("notificationHour"), Json(8));
    EXPECT_EQ(settings.value("notificationMinute"), Json(0));
    EXPECT_FALSE(settings.storedValue("notificationHour"));
}

TEST_F(QuillornAppTest, aNormalLaunchKeepsItsStoreInPrivateFiles) {
    addClient(launch()->container());
    EXPECT_EQ(clientCount(launch()->container()), 1U);
    const auto mode = [](const fs::path& path) { return fs::status(path).permissions(); };
    EXPECT_EQ(mode(storeFile()), fs::perms::owner_read | fs::perms::owner_write);
    EXPECT_EQ(mode(storeFile().parent_path()), fs::perms::owner_all);
}

TEST_F(QuillornAppTest, demoAndTestLaunchesLeaveTheUsersStoreAlone) {
    addClient(launch()->container());
    for (const ProcessInfo& process :
         {ProcessInfo{{"-QUILLORN_DEMO"}, {}}, ProcessInfo{{}, {{"XCTestConfigurationFilePath", "1"}}}}) {
        const auto app = launch(process);
        EXPECT_EQ(clientCount(app->container()), 0U);
        addClient(app->container());
    }
    EXPECT_EQ(clientCount(launch()->container()), 1U);
}

TEST_F(QuillornAppTest, theStoreOfTheGroupContainerIsTakenOverOnce) {
    paths.hasGroupContainer = true;
    const fs::path group = *paths.groupContainer("group.com.quillorn.app");
    fs::create_directories(group);
    // A log without its store is nothing to take over.
    writeFile(group / "Quillorn.store-wal", "log");
    EXPECT_EQ(clientCount(launch()->container()), 0U);
    EXPECT_EQ(readFile(group / "Quillorn.store-wal"), "log");
    addClient(launch()->container());
    fs::remove(group / "Quillorn.store-wal");
    fs::rename(storeFile(), group / "Quillorn.store");
    fs::remove_all(storeFile().parent_path());

    EXPECT_EQ(clientCount(launch()->container()), 1U);
    EXPECT_TRUE(fs::exists(group / "Quillorn.store"));
    // From now on the store of our own counts.
    writeFile(group / "Quillorn.store", "no database");
    EXPECT_EQ(launch()->runMode(), RunMode::normal);
}

/// A database that says "application_id" and "user_version" of its own.
void makeDatabase(const fs::path& file, const std::string& pragmas) {
    fs::create_directories(file.parent_path());
    sqlite3* database = nullptr;
    ASSERT_EQ(sqlite3_open(file.c_str(), &database), SQLITE_OK);
    const std::string sql = "CREATE TABLE other(x);" + pragmas;
    ASSERT_EQ(sqlite3_exec(database, sql.c_str(), nullptr, nullptr, nullptr), SQLITE_OK);
    sqlite3_close(database);
}

TEST_F(QuillornAppTest, aStoreThatCannotBeOpenedIsLeftAloneAndExplained) {
    struct Case {
        std::function<void()> prepare;
        std::string message;
    };
    const Case cases[] = {
        {[&] { writeStoreFile("This is no database, just some text that is long enough to be looked at."); },
         "file is not a database"},
        {[&] { makeDatabase(storeFile(), "PRAGMA user_version = 1000; PRAGMA application_id = 0x5175696C"); },
         "The store has schema version 1000, and this program knows versions up to"},
        {[&] { makeDatabase(storeFile(), ""); }, "The store file is a database of another program"},
        {[&] {
             makeDatabase(storeFile(), "PRAGMA user_version = 3; PRAGMA application_id = 0x5175696C; "
                                       "CREATE TABLE Client(key INTEGER PRIMARY KEY, strange TEXT NOT NULL)");
         },
         "The store does not match schema version 3"},
    };
    settings.set("apiAutoStart", true);
    for (const Case& each : cases) {
        fs::remove_all(storeFile().parent_path());
        log.clear();
        each.prepare();
        const std::string before = readFile(storeFile());

        auto app = launch();
        EXPECT_EQ(app->runMode(), RunMode::fallback);
        ASSERT_TRUE(app->launchFailureMessage());
        EXPECT_NE(app->launchFailureMessage()->find(each.message), std::string::npos) << *app->launchFailureMessage();
        ASSERT_EQ(log.lines().size(), 2U);
        EXPECT_TRUE(log.lines()[0].starts_with("QuillornMigrationPlan: managed open failed (")) << log.lines()[0];
        EXPECT_TRUE(log.lines()[0].ends_with("); retrying with inferred migration")) << log.lines()[0];
        EXPECT_EQ(log.lines()[1], "QuillornApp: ModelContainer failed to open: " + *app->launchFailureMessage());
        // It runs, on an empty store, and without a server.
        addClient(app->container());
        mainQueue.runPosted();
        EXPECT_FALSE(app->apiServer().isRunning());
        app.reset();
        EXPECT_TRUE(readFile(storeFile()) == before) << "the file has changed: " << each.message;
    }
}

TEST_F(QuillornAppTest, theRecoveryTextNamesTheCauseAndTheBackups) {
    writeStoreFile("This is no database, just some text that is long enough to be looked at.");
    const auto app = launch();
    EXPECT_EQ(app->storeRecovery().text(),
              "Quillorn couldn't open your data\n\n"
              "Your data hasn't been changed or deleted. This usually means the app needs an update to read a newer "
              "database format.\n\n" +
                  *app->launchFailureMessage() + "\n\nYour hourly backups are safe here:\n" +
                  (storeFile().parent_path() / "Backups").string() + "\n");
    // A folder of the user's choice counts while it, or the folder it is to be made in, can be written.
    settings.set("backupFolderPath", (folder / "mine").string());
    EXPECT_EQ(app->storeRecovery().backupsFolder, folder / "mine");
    settings.set("backupFolderPath", (folder / "no/such/folder").string());
    EXPECT_EQ(app->storeRecovery().backupsFolder, storeFile().parent_path() / "Backups");
}

TEST_F(QuillornAppTest, theServerStartsByTheSettings) {
    settings.set("apiAutoStart", true);
    settings.set("apiPort", 70000);
    EXPECT_EQ(launch()->apiServer().lastError(), "Port must be between 1 and 65535");
    settings.set("apiPort", 0);
    EXPECT_EQ(APIServerOptions::fromSettings(settings).port, 18080);
    settings.set("apiExternalAccess", true);
    EXPECT_EQ(launch()->apiServer().lastError(),
              "API server not started: external access and \"require API key\" both need an API key. Set one in "
              "Settings.");
    settings.set("apiAutoStart", false);
    EXPECT_FALSE(launch()->apiServer().lastError());
    // Demo mode never starts it by itself.
    settings.set("apiAutoStart", true);
    EXPECT_FALSE(launch({{"-QUILLORN_DEMO"}, {}})->apiServer().lastError());

    settings.remove("apiExternalAccess");
    settings.set("apiAutoStart", false);
    const auto app = launch();
    app->startAPIServer({.port = 0});
    waitForServer(*app);
    EXPECT_TRUE(app->apiServer().isRunning());
    EXPECT_NE(app->apiServer().port(), 0);
}

TEST_F(QuillornAppTest, withoutAHomeThereIsNothingToLaunch) {
    paths.hasHome = false;
    EXPECT_THROW(launch(), std::runtime_error);
    EXPECT_EQ(launch({{"-QUILLORN_DEMO"}, {}})->runMode(), RunMode::demo);
}

} // namespace
} // namespace quillorn
