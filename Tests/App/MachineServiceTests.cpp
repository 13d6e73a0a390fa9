#include "App/MachineServices.h"

#include "App/NotificationTurn.h"
#include "App/QuillornApp.h"
#include "App/TimeJumps.h"
#include "Models/ProjectTask.h"
#include "Models/TimeEntry.h"
#include "Platform/Calendar.h"
#include "Platform/Crypto.h"
#include "Platform/Text.h"
#include "Reminders/ReminderIntents.h"
#include "Support/FakeClock.h"
#include "Support/FakeNetworkPath.h"
#include "Support/FakeNotifications.h"
#include "Support/FakePaths.h"
#include "Support/ManualQueue.h"
#include "Support/MemorySettings.h"
#include "Support/ScopedEnvironment.h"
#include "Support/TestRecords.h"
#include "Support/TestStore.h"

#include <gmock/gmock.h>
#include <thread>

namespace quillorn {
namespace {

using namespace std::chrono_literals;

Task<> keepTask(Task<SpokenResult> spoken, std::optional<UUID>& task) {
    const SpokenResult result = co_await spoken;
    task = result.taskId;
}

/// A program that stays, at a machine of the test's own.
struct MachineServiceTest : testing::Test {
    std::unique_ptr<QuillornApp> launch(const ProcessInfo& process = {}) {
        return std::make_unique<QuillornApp>(AppEnvironment{clock, random, log, notifications, queue, settings, paths,
                                                            text, calendar, "1.2.3", &machine},
                                             process, QuillornApp::ServerStart::byCaller);
    }
    void waitUntil(const std::function<bool()>& holds) {
        const auto limit = std::chrono::steady_clock::now() + 20s;
        while (!holds() && std::chrono::steady_clock::now() < limit) {
            std::this_thread::yield();
            queue.runPosted();
        }
        ASSERT_TRUE(holds()) << "waited in vain";
    }
    template <typename Parameters, typename Intent>
    UUID ask(QuillornApp& app, Intent intent, Parameters parameters) {
        std::optional<UUID> task;
        TaskScope scope;
        scope.start(keepTask((app.reminderIntents().*intent)(std::move(parameters)), task));
        waitUntil([&] { return task.has_value(); });
        return task.value_or(UUID());
    }
    /// A task that is due an hour from here.
    UUID remind(QuillornApp& app) {
        return ask(app, &ReminderIntents::create,
                   CreateReminderParameters{.title = "Call",
                                            .list = QuillornReminderList::inboxID(),
                                            .dueDate = DateComponents::of(clock.now() + 1h, true, calendar)});
    }

    TemporaryFolder folder;
    FakeClock clock;
    SystemRandom random;
    RecordingLog log;
    NotificationCenter notifications;
    ManualQueue queue{clock};
    MemorySettings settings;
    FakePaths paths{folder.path()};
    Text text{"en_US"};
    Calendar calendar{"UTC", "en_US"};
    FakeWakeSignals wake;
    FakeNetworkPath network;
    FakeNotifications desktop{clock, queue, wake};
    MachineSignals machine{desktop, wake, network};
};

TEST_F(MachineServiceTest, intentsScheduleAtOnceAndAClickStartsTheTimer) {
    const auto app = launch();
    const UUID task = remind(*app);
    EXPECT_EQ(desktop.pending().size(), 1U);
    ask(*app, &ReminderIntents::update, UpdateReminderParameters{.target = task, .isCompleted = true});
    EXPECT_TRUE(desktop.pending().empty());
    const UUID other = remind(*app);
    change(app->container(), [](ModelContext& context) {
        make<TimeEntry>(context, {.task = context.fetch<ProjectTask>().front(), .startTime = testNow});
    });
    queue.advance(1h);
    ASSERT_EQ(desktop.shown.size(), 1U);
    desktop.choose("start");
    ModelContext context(app->container());
    const auto running = context.fetch<TimeEntry>({.where = "endTime IS NULL"});
    ASSERT_EQ(running.size(), 1U) << "the one that ran has ended";
    EXPECT_EQ(running[0]->task()->id(), other);

    const auto demo = launch({{demoArgument}, {}});
    remind(*demo);
    queue.advance(1min);
    EXPECT_TRUE(desktop.pending().empty()) << "what is shown to play with";
}

TEST_F(MachineServiceTest, whatAnotherProcessWritesIsSeen) {
    const auto app = launch();
    SyncMonitor& monitor = app->machineServices()->syncMonitor();
    change(app->container(), [](ModelContext& context) { make<Tag>(context); });
    queue.advance(1s);
    EXPECT_EQ(monitor.status().name(), "idle") << "our own";
    StoreSurroundings another;
    change(*another.open(storeFile(paths)), [](ModelContext& context) { make<Tag>(context); });
    waitUntil([&] { return monitor.status().name() == "syncing"; });
    queue.advance(24h);
    EXPECT_EQ(monitor.status().name(), "synced");
    EXPECT_EQ(formatISO8601(app->machineServices()->dayChangeObserver().currentDay()), "2026-01-16T00:00:00Z");
}

TEST_F(MachineServiceTest, anotherTimeZoneIsFollowed) {
    const ScopedEnvironment noZone("TZ", std::nullopt);
    const auto link = [&](const char* zone, const char* name) {
        std::filesystem::create_symlink(std::string("/usr/share/zoneinfo/") + zone, folder.path() / name);
    };
    link("UTC", "localtime");
    TimeJumps jumps(std::make_unique<FakeWakeSignals>(), queue, calendar, folder.path() / "localtime");
    const Observation jump = jumps.observe([&] { wake.tell(); });
    const auto app = launch();
    ask(*app, &ReminderIntents::create,
        CreateReminderParameters{.title = "Call",
                                 .list = QuillornReminderList::inboxID(),
                                 .dueDate = DateComponents::of(clock.now() + 24h, false, calendar)});
    const std::size_t removals = desktop.removals;
    link("Asia/Tokyo", "new");
    std::filesystem::rename(folder.path() / "new", folder.path() / "localtime");
    waitUntil([&] { return desktop.removals > removals; });
    EXPECT_EQ(formatISO8601(app->machineServices()->dayChangeObserver().currentDay()), "2026-01-14T15:00:00Z");
    queue.advance(12h + 1min);
    EXPECT_EQ(desktop.shown.size(), 1U) << "at nine in Tokyo";
}

TEST_F(MachineServiceTest, oneProcessShowsUntilItCanNotAnyMore) {
    const auto app = launch();
    NotificationTurn first(paths, log);
    NotificationTurn second(paths, log);
    EXPECT_TRUE(first.take() && first.take());
    EXPECT_FALSE(second.take());
    first.giveBack();
    EXPECT_TRUE(second.take());
    EXPECT_FALSE(first.take());
}

} // namespace
} // namespace quillorn
