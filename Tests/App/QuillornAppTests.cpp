#include "App/QuillornApp.h"

#include "API/APIServer.h"
#include "Models/Client.h"
#include "Models/Settings.h"
#include "Platform/Calendar.h"
#include "Platform/Text.h"
#include "Services/BackupService.h"
#include "Support/FakeClock.h"
#include "Support/FakePaths.h"
#include "Support/FixedRandom.h"
#include "Support/ManualQueue.h"
#include "Support/MemorySettings.h"
#include "Support/TestRecords.h"
#include "Support/TestStore.h"

#include <gmock/gmock.h>

namespace quillorn {
namespace {

using testing::AllOf;
using testing::EndsWith;
using testing::HasSubstr;
using testing::StartsWith;
namespace fs = std::filesystem;

const ProcessInfo demo{{"-QUILLORN_DEMO"}, {}};

struct QuillornAppTest : testing::Test {
    std::unique_ptr<QuillornApp> launch(const ProcessInfo& process = {},
                                        QuillornApp::ServerStart serverStart = QuillornApp::ServerStart::bySetting,
                                        QuillornApp::Schedules schedules = QuillornApp::Schedules::run) {
        return std::make_unique<QuillornApp>(
            AppEnvironment{clock, random, log, notifications, mainQueue, settings, paths, text, calendar, "1.2.3"},
            process, serverStart, schedules);
    }
    fs::path storeFile() const { return paths.applicationSupport() / "Quillorn" / "Quillorn.store"; }

    TemporaryFolder folder;
    FakeClock clock;
    FixedRandom random;
    RecordingLog log;
    NotificationCenter notifications;
    ManualQueue mainQueue{clock};
    MemorySettings settings;
    FakePaths paths{folder.path()};
    Text text{"en_US"};
    Calendar calendar{"UTC", "en_US"};
};

std::uint64_t clientCount(ModelContainer& container) {
    ModelContext context(container);
    return context.fetch<Client>().size();
}

void addClient(ModelContainer& container) {
    change(container, [](ModelContext& context) { make<Client>(context); });
}

TEST_F(QuillornAppTest, theFlagsDecideTheRunModeAndItsStore) {
    struct Case {
        ProcessInfo process;
        RunMode mode;
        const char* flags; // as logged; null for no line
    };
    const Case cases[] = {
        // clang-format off
        {{{}, {}}, RunMode::normal, nullptr},
        {demo, RunMode::demo, "isDemo=true isTesting=false"},
        {{{"serve", "-QUILLORN_DEMO"}, {{"QUILLORN_DEMO", "0"}}}, RunMode::demo, "isDemo=true isTesting=false"},
        {{{"-QUILLORN_DEMO=1"}, {}}, RunMode::normal, nullptr},
        {{{}, {{"QUILLORN_DEMO", "1"}}}, RunMode::demo, "isDemo=true isTesting=false"},
        {{{}, {{"QUILLORN_DEMO", "true"}}}, RunMode::normal, nullptr},
        {{{}, {{"XCTestConfigurationFilePath", ""}}}, RunMode::test, "isDemo=false isTesting=true"},
        {{{"-QUILLORN_DEMO"}, {{"XCTestConfigurationFilePath", "x"}}}, RunMode::test, "isDemo=true isTesting=true"},
        // clang-format on
    };
    for (const Case& each : cases) {
        log.clear();
        const auto app = launch(each.process);
        EXPECT_EQ(app->runMode(), each.mode);
        EXPECT_EQ(log.lines().size(), each.flags != nullptr ? 1U : 0U);
        EXPECT_TRUE(each.flags == nullptr || log.lines()[0] == std::string("Quillorn launch: ") + each.flags);
        EXPECT_EQ(app->container().isInMemory(), each.mode != RunMode::normal);
        EXPECT_FALSE(app->launchFailureMessage());
        // Only a normal launch sees what another one has stored.
        EXPECT_EQ(clientCount(app->container()) > 0, each.mode == RunMode::normal && &each != cases);
        addClient(app->container());
    }
    EXPECT_EQ(clientCount(launch()->container()), 3U);
    EXPECT_EQ(fs::status(storeFile()).permissions(), fs::perms(0600));
    EXPECT_EQ(fs::status(storeFile().parent_path()).permissions(), fs::perms(0700));
}

TEST_F(QuillornAppTest, notificationDefaultsAreThereInEveryMode) {
    launch(demo);
    EXPECT_EQ(settings.value("notificationsEnabled"), Json(true));
    EXPECT_EQ(settings.value("notificationHour"), Json(8));
    EXPECT_EQ(settings.value("notificationMinute"), Json(0));
    EXPECT_FALSE(settings.storedValue("notificationHour"));
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

TEST_F(QuillornAppTest, aStoreThatCannotBeOpenedIsLeftAloneAndExplained) {
    const auto database = [&](std::string pragmas) {
        return [this, pragmas] { ForeignConnection(storeFile()).execute("CREATE TABLE other(x);" + pragmas); };
    };
    const std::pair<std::function<void()>, const char*> cases[] = {
        {[&] { writeFile(storeFile(), std::string(5000, 'x')); }, "file is not a database"},
        {database(""), "The store file is a database of another program"},
    };
    settings.set("apiAutoStart", true);
    settings.set("apiPort", 70000); // a start would fail at once
    for (const auto& [prepare, message] : cases) {
        fs::remove_all(storeFile().parent_path());
        fs::create_directories(storeFile().parent_path());
        log.clear();
        prepare();
        const std::string before = readFile(storeFile());

        auto app = launch();
        EXPECT_EQ(app->runMode(), RunMode::fallback);
        const std::string failure = app->launchFailureMessage().value_or("none");
        EXPECT_THAT(failure, HasSubstr(message));
        EXPECT_THAT(log.lines(), testing::ElementsAre(AllOf(StartsWith("QuillornMigrationPlan: managed open failed ("),
                                                            EndsWith("); retrying with inferred migration")),
                                                      "QuillornApp: ModelContainer failed to open: " + failure));
        const fs::path backups = storeFile().parent_path() / "Backups";
        EXPECT_EQ(
            app->storeRecovery().text(),
            "Quillorn couldn't open your data\n\nYour data hasn't been changed or deleted. This usually means the "
            "app needs an update to read a newer database format.\n\n" +
                failure + "\n\nYour hourly backups are safe here:\n" + backups.string() + "\n");
        // A folder of the user's choice counts while it, or the folder it is to be made in, can be written.
        settings.set("backupFolderPath", (folder / "mine").string());
        EXPECT_EQ(app->storeRecovery().backupsFolder, folder / "mine");
        settings.set("backupFolderPath", (folder / "no/such/folder").string());
        EXPECT_EQ(app->storeRecovery().backupsFolder, backups);
        // It runs, on an empty store, and without a server.
        addClient(app->container());
        EXPECT_FALSE(app->apiServer().lastError());
        app.reset();
        EXPECT_TRUE(readFile(storeFile()) == before) << "the file has changed: " << message;
    }
}

TEST_F(QuillornAppTest, onlyALaunchThatStaysSchedulesBackups) {
    using enum QuillornApp::Schedules;
    using enum QuillornApp::ServerStart;
    const auto backsUp = [&](const ProcessInfo& process, QuillornApp::Schedules schedules) {
        const auto app = launch(process, byCaller, schedules);
        mainQueue.advance(std::chrono::seconds(30));
        return app->backupService().isBackingUp();
    };
    EXPECT_TRUE(backsUp({}, run));
    EXPECT_FALSE(backsUp({}, rest));
    EXPECT_FALSE(backsUp(demo, run));
    EXPECT_EQ(launch(demo)->backupService().backupFolderURL(), "/dev/Backups");
    writeFile(storeFile(), std::string(5000, 'x'));
    EXPECT_FALSE(backsUp({}, run)) << "the fallback";
    EXPECT_EQ(launch()->backupService().backupFolderURL(), storeFile().parent_path() / "Backups");
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
    settings.set("apiRequireAuthLocal", "yes");
    EXPECT_EQ(launch()->apiServer().lastError(),
              "API server not started: the setting apiRequireAuthLocal has to be true or false");
    settings.remove("apiRequireAuthLocal");
    settings.set("apiAutoStart", false);
    EXPECT_FALSE(launch()->apiServer().lastError());
    // Demo mode never starts it by itself.
    settings.set("apiAutoStart", true);
    EXPECT_FALSE(launch(demo)->apiServer().lastError());

    settings.remove("apiExternalAccess");
    settings.set("apiAutoStart", false);
    const auto app = launch();
    app->startAPIServer({.port = 0});
    while (!app->apiServer().isRunning() && !app->apiServer().lastError())
        mainQueue.runPosted();
    EXPECT_TRUE(app->apiServer().isRunning());
    EXPECT_NE(app->apiServer().port(), 0);
}

TEST_F(QuillornAppTest, withoutAHomeThereIsNothingToLaunch) {
    paths.hasHome = false;
    EXPECT_THROW(launch(), std::runtime_error);
    EXPECT_EQ(launch(demo)->runMode(), RunMode::demo);
}

} // namespace
} // namespace quillorn
