#include "API/APIServer.h"
#include "Models/Settings.h"
#include "Platform/Background.h"
#include "Platform/Calendar.h"
#include "Platform/Text.h"
#include "Services/BackupService.h"
#include "Services/TimerService.h"
#include "Store/MainContext.h"
#include "Support/FakeNetworkPath.h"
#include "Support/FakeNotifications.h"
#include "Support/FakePaths.h"
#include "Support/FixedRandom.h"
#include "Support/ManualQueue.h"
#include "Support/MemorySettings.h"
#include "Support/TestRecords.h"
#include "Support/TestStore.h"
#include "Views/APISettingsView.h"
#include "Views/BackupSettingsView.h"
#include "Views/DesktopSettingsView.h"
#include "Views/GeneralSettingsView.h"
#include "Views/NotificationSettingsView.h"
#include "Views/SettingsView.h"
#include "Views/SyncSettingsView.h"
#include "Views/TimerToolbarView.h"

#include <gmock/gmock.h>
#include <thread>

namespace quillorn {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::Optional;

struct SettingsViews : testing::Test, TestStore {
    template <class Condition>
    void until(const Condition& condition) {
        for (queue.runPosted(); !condition(); queue.runPosted())
            std::this_thread::yield(); // work has a thread of its own
    }

    FakeClock clock;
    ManualQueue queue{clock};
    Calendar calendar{"UTC", "en_US"};
    Text text{"en_US"};
    MemorySettings settings;
    Background background{queue};
};

TEST_F(SettingsViews, keepWhatIsChosenAndShowWhatOthersKeep) {
    SettingsView window(settings, queue);
    GeneralSettingsView general(settings, queue);
    int told = 0;
    const Observation token = general.observe([&] { ++told; });
    EXPECT_THAT(window.selectedTab(), Optional(0U));
    window.select("ai");
    EXPECT_THAT(window.selectedTab(), Optional(5U));
    window.select("nowhere");
    EXPECT_FALSE(window.selectedTab());
    EXPECT_EQ(general.completionHelp(), "Prompt when completing a parent with incomplete subtasks");
    queue.runPosted();
    told = 0;
    general.setCompletion(SubtaskCompletionBehavior::blockUntilComplete);
    general.setDefaultPriority(TaskPriority::urgent);
    EXPECT_EQ(told, 2);
    settings.set("defaultPriority", 9); // by hand
    queue.runPosted();
    EXPECT_GT(told, 2);
    EXPECT_EQ(general.defaultPriority(), TaskPriority::medium);
    EXPECT_EQ(general.completion(), SubtaskCompletionBehavior::blockUntilComplete);
    settings.failsToWrite = true;
    EXPECT_THROW(general.setShowsCompletedTasks(true), std::runtime_error);
    EXPECT_FALSE(general.showsCompletedTasks());
}

TEST_F(SettingsViews, sayWhetherTheProgramStartsAtLoginAndLeaveWhatIsNotTheirs) {
    const std::filesystem::path file = folder.path() / "config/autostart/org.example.Desktop.desktop";
    DesktopSettingsView view(
        {settings, queue, background,
         systemLoginItem(FakePaths(folder.path()), {"org.example.Desktop", "Example", R"(/opt/a "$`%\b)"}), nullptr});
    const std::string ours = "[Desktop Entry]\nType=Application\nName=Example\n"
                             R"(Exec="/opt/a \\"\\$\\`%%\\\\b")"
                             "\nIcon=org.example.Desktop\nX-Quillorn-Login=true\n";
    const std::string foreign = "[Desktop Entry]\nExec=other\n";
    struct Case {
        const char* name;
        std::optional<std::string> before;
        std::optional<bool> choice;
        bool isOn, isRefused;
        std::optional<std::string> after;
    };
    const Case cases[] = {
        {"switched on", {}, true, true, false, ours}, // makes the folder
        {"on already", ours, {}, true, false, ours},
        {"switched off", ours, false, false, false, {}},
        {"switched off by the desktop", ours + "Hidden=true\n", {}, false, false, ours + "Hidden=true\n"},
        {"and on again", ours + "X-GNOME-Autostart-enabled=false\n", true, true, false, ours},
        {"another's, on", foreign, true, false, true, foreign},
        {"another's, off", foreign, false, false, true, foreign},
    };
    bool isTold = false;
    const Observation token = view.observe([&] { isTold = true; });
    const auto choose = [&](std::optional<bool> choice) {
        isTold = false;
        choice ? view.setStartsAtLogin(*choice) : view.appear();
        until([&] { return isTold; });
    };
    for (const Case& each : cases) {
        std::filesystem::remove(file);
        if (each.before)
            writeFile(file, *each.before);
        choose(each.choice);
        EXPECT_EQ(view.startsAtLogin(), each.isOn) << each.name;
        EXPECT_EQ(!view.loginProblem().empty(), each.isRefused) << each.name << view.loginProblem();
        EXPECT_EQ(exists(file) ? std::optional(readFile(file)) : std::nullopt, each.after) << each.name;
    }
    writeFile(folder.path() / "elsewhere", ours);
    std::filesystem::remove(file);
    create_symlink(folder.path() / "elsewhere", file);
    choose(true);
    choose(false);
    EXPECT_THAT(view.loginProblem(), testing::HasSubstr(file.string()));
    EXPECT_TRUE(is_symlink(file) && readFile(folder.path() / "elsewhere") == ours);
}

TEST_F(SettingsViews, startTheServerWhereItMayStart) {
    const FakePaths paths{folder.path()};
    FixedRandom fixed;
    APIServer server({*container, clock, text, paths, log, queue, background, "1"});
    APISettingsView view({server, settings, fixed, queue}, "desk");
    EXPECT_EQ(view.port() + " " + view.mcpEndpoint(), "18080 http://localhost:18080/mcp");
    for (const char* wrong : {"", "0", "65536", "80 80", "-1"}) {
        view.setPort(wrong);
        view.toggle();
        EXPECT_THAT(server.lastError(), Optional(std::string(APISettingsView::portIsWrong))) << wrong;
        EXPECT_EQ(view.port(), wrong);
    }
    EXPECT_FALSE(settings.storedValue("apiPort"));
    settings.set("apiPort", 18081);
    queue.runPosted();
    EXPECT_EQ(view.port(), "18081");
    view.setRequiresAuthLocal(true);
    EXPECT_THAT(view.keyWarning(), Optional(APISettingsView::keyIsMissing));
    view.toggle();
    EXPECT_THAT(view.lastError(), Optional(std::string(APISettingsView::keyIsMissing)));
    EXPECT_THROW(view.setKey("two\nlines"), std::runtime_error);
    view.generateKey();
    EXPECT_EQ(view.key().size(), 64U);
    EXPECT_FALSE(view.keyWarning());
    view.setAllowsExternalAccess(true);
    EXPECT_EQ(view.endpoint(), "http://0.0.0.0:18081");
    EXPECT_THAT(view.copyConfig(), testing::AllOf(testing::HasSubstr("http://desk:18081/mcp"),
                                                  testing::HasSubstr("Bearer " + view.key())));
    queue.advance(1999ms);
    EXPECT_EQ(view.copyConfigButton(), "Copied!");
    queue.advance(1ms);
    EXPECT_EQ(view.copyConfigButton(), "Copy Config for Claude Code");
    view.setAllowsExternalAccess(false);
    server.start(0, false, view.key(), true); // on whatever port is free
    until([&] { return view.isRunning() || !server.hasServer(); });
    EXPECT_EQ(view.status(), "Running");
    EXPECT_EQ(view.endpoint(), "http://localhost:" + std::to_string(server.port()));
    view.toggle();
    EXPECT_EQ(view.toggleButton(), "Start");
}

TEST_F(SettingsViews, sayWhatBackupsHaveComeTo) {
    BackupService service({clock, calendar, settings, queue, background, log}, file(), *container, false);
    BackupSettingsView view({service, settings, queue, clock, log});
    EXPECT_EQ(view.lastBackup(), "Never");
    view.chooseFolder("/dev/null/nowhere");
    EXPECT_THAT(log.lines(), testing::Contains(testing::StartsWith("Could not save backup folder access: ")));
    EXPECT_FALSE(view.folderWarning());
    view.backUpNow();
    EXPECT_TRUE(view.isBackingUp());
    until([&] { return !view.isBackingUp(); });
    EXPECT_FALSE(view.lastError()) << *view.lastError();
    clock.advance(5min);
    EXPECT_EQ(view.lastBackup(), "5 minutes ago");
    settings.set("backupFolderPath", "/nowhere/at/all");
    EXPECT_THAT(view.folderWarning(),
                Optional(testing::StartsWith("Quillorn can no longer write to /nowhere/at/all.")));
    EXPECT_THAT(BackupSettingsView::confirmationFor("/a/b.lzfse").message, testing::StartsWith("Restoring “b.lzfse” "));
    settings.remove("backupFolderPath");
    view.restore(*service.lastBackupFile());
    EXPECT_EQ(view.restoreButton(), "Restoring…");
    until([&] { return !view.isRestoring(); });
    EXPECT_THAT(view.lastResult(), Optional(testing::StartsWith("Restored from Quillorn-")));
}

TEST_F(SettingsViews, sayHowSyncAndNotificationsStand) {
    FakeNetworkPath network;
    SyncMonitor monitor(network, clock, queue);
    const SyncSettingsView sync({monitor, clock, calendar});
    EXPECT_EQ(sync.word() + " " + std::string(sync.network()), "Ready Connected");
    EXPECT_FALSE(sync.lastSynced());
    monitor.handleRemoteChange();
    queue.advance(61s);
    EXPECT_THAT(sync.lastSyncedAgo(), Optional(std::string("Last synced 1 minute ago")));
    EXPECT_EQ(sync.symbol(), "checkmark.icloud");

    FakeWakeSignals wakes;
    FakeNotifications desktop(clock, queue, wakes);
    int refreshes = 0;
    NotificationSettingsView view(desktop, [&] { ++refreshes; }, settings, queue);
    using enum NotificationSettingsView::Permission;
    const std::pair<NotificationAuthorization, NotificationSettingsView::Permission> cases[] = {
        {NotificationAuthorization::denied, denied},
        {NotificationAuthorization::authorized, granted},
        {NotificationAuthorization::notDetermined, canBeAskedFor}};
    for (const auto& [authorization, permission] : cases) {
        desktop.authorize(authorization);
        EXPECT_EQ(view.permission(), permission);
    }
    view.enable();
    EXPECT_EQ(view.permission(), granted);
    view.setOn(false);
    view.setTime(7, 30);
    EXPECT_EQ(refreshes, 2);
    EXPECT_EQ(view.hour() * 60 + view.minute(), 450);
}

TEST_F(SettingsViews, theToolbarFollowsTheTimerWhileSomebodyLooks) {
    MainContext main(*container, queue, log);
    TimerService timer(queue, clock);
    auto& site = make<Project>(main.context(), {.name = "Site", .color = "#FF0000"});
    auto& build = make<ProjectTask>(main.context(), {.title = "Build", .project = &site});
    auto& call = make<ProjectTask>(main.context(), {.title = "Call", .status = TaskStatus::inProgress});
    make<ProjectTask>(main.context(), {.title = "Done"}).setCompleted(true, testNow);
    main.save();
    TimerToolbarView view({main, timer, clock, calendar, text});
    EXPECT_EQ(view.title() + view.clock() + view.started(), "");
    const auto titles = [&](std::string_view search) {
        std::vector<std::string> all;
        for (const auto& choice : view.choices(search))
            all.push_back(choice.title);
        return all;
    };
    EXPECT_THAT(titles(""), ElementsAre("Call", "Build"));
    EXPECT_THAT(titles(" BUI"), ElementsAre("Build"));
    int told = 0;
    std::optional<Observation> token = view.observe([&] { ++told; });
    view.toggle(build.id());
    told = 0;
    queue.advance(10s);
    EXPECT_GE(told, 10);
    EXPECT_EQ(view.title() + " " + view.color() + " " + view.clock(), "Build #FF0000 00:10");
    view.startEarlier(15);
    EXPECT_EQ(view.clock() + ", " + view.started(), "15:10, Started 11:45 AM");
    EXPECT_THAT(view.adjust("15:00"), Optional(std::string(TimerToolbarView::notYet)));
    EXPECT_THAT(view.adjust("whenever"), Optional(std::string("“whenever” is no time")));
    EXPECT_FALSE(view.adjust("10:00"));
    EXPECT_EQ(view.clock(), "2:00:10");
    token.reset();
    told = 0;
    queue.advance(10s);
    EXPECT_EQ(told, 0);
    view.start(call.id());
    EXPECT_EQ(view.task(), call.id());
    view.toggle(build.id());
    EXPECT_FALSE(view.isRunning());
    EXPECT_EQ(view.adjust("10:00"), TimerToolbarView::notRunning);
}

} // namespace
} // namespace quillorn
