#include "Services/NotificationService.h"

#include "Models/ProjectTask.h"
#include "Platform/Background.h"
#include "Platform/Calendar.h"
#include "Store/MainContext.h"
#include "Support/FakeNotifications.h"
#include "Support/ManualQueue.h"
#include "Support/MemorySettings.h"
#include "Support/TestRecords.h"
#include "Support/TestStore.h"

#include <gmock/gmock.h>
#include <thread>

namespace quillorn {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;

TEST(DueNotifications, areDueAtTheHourOfTheirDay) {
    const Calendar calendar("America/New_York", "en_US");
    struct Case {
        const char *due, *now, *moment; // null: none
        bool hasTime;
        NotificationTime time;
    };
    const Case cases[] = {
        {"2026-01-15T05:00:00Z", "2026-01-15T12:00:00Z", "2026-01-15T13:15:00Z", false, {8, 15}},
        {"2026-01-16T04:59:59Z", "2026-01-15T12:00:00Z", "2026-01-15T13:00:00Z", false, {8, 0}},
        {"2026-01-16T04:59:59Z", "2026-01-15T13:00:00Z", nullptr, false, {8, 0}},
        {"2026-01-15T12:30:45Z", "2026-01-15T12:00:00Z", "2026-01-15T12:30:00Z", true, {23, 0}},
        {"2026-01-15T12:30:45Z", "2026-01-15T12:30:00Z", nullptr, true, {23, 0}},
        {"2026-03-08T20:00:00Z", "2026-03-08T05:00:00Z", "2026-03-08T07:30:00Z", false, {2, 30}}, // in the gap
        {"2026-11-01T20:00:00Z", "2026-11-01T04:00:00Z", "2026-11-01T05:30:00Z", false, {1, 30}}, // the first of two
        {"2026-01-15T05:00:00Z", "2026-01-15T12:00:00Z", "2026-01-16T04:59:00Z", false, {99, 99}},
    };
    for (const auto& [due, now, moment, hasTime, time] : cases) {
        const auto request = dueNotification({.dueDate = date(due), .dueHasTime = hasTime}, time, calendar, date(now));
        EXPECT_EQ(request ? formatISO8601(request->moment) : "", moment != nullptr ? moment : "") << due;
    }
}

struct NotificationServiceTest : testing::Test, TestStore {
    ProjectTask& add(const char* title, const char* due) {
        auto& task = make<ProjectTask>(context, {.title = title, .dueDate = date(due)});
        task.setDueHasTime(true);
        context.save();
        return task;
    }
    void addByAnother(int count) {
        change(*other, [&](ModelContext& theirs) {
            for (int i = 0; i < count; ++i)
                make<ProjectTask>(theirs, {.title = "Due", .dueDate = date("2026-01-16T17:00:00Z")});
        });
        main.noticeFileChange();
    }
    /// Until what is read elsewhere has come.
    void waitForPending(std::size_t count) {
        const auto limit = std::chrono::steady_clock::now() + 10s;
        while (notifications.pending().size() != count && std::chrono::steady_clock::now() < limit) {
            std::this_thread::yield();
            queue.runPosted();
        }
        ASSERT_EQ(notifications.pending().size(), count);
    }

    FakeClock clock; // 7:00 in New York
    ManualQueue queue{clock};
    std::unique_ptr<ModelContainer> other = open(); // as another process has it
    MainContext main{*container, queue, log};
    ModelContext& context = main.context();
    FakeWakeSignals wake;
    FakeNotifications notifications{clock, queue, wake};
    MemorySettings settings;
    Calendar calendar{"America/New_York", "en_US"};
    Background background{queue};
    NotificationService service{{notifications, clock, calendar, settings, queue, log}, main, background};
};

TEST_F(NotificationServiceTest, aTaskIsScheduledByWhatItIsLike) {
    auto& task = add("Offer", "2026-01-15T12:30:00Z");
    const auto pending = [&] {
        service.schedule(task, 8, 0);
        return notifications.pending();
    };
    const std::string name = "quillorn.task-due." + task.id().string();
    EXPECT_THAT(pending(), ElementsAre(name));
    settings.set("notificationsEnabled", false);
    queue.runPosted();
    EXPECT_THAT(notifications.pending(), ElementsAre(name)) << "only a new schedule takes it back";
    EXPECT_THAT(pending(), IsEmpty());
    settings.set("notificationsEnabled", true);
    EXPECT_THAT(pending(), ElementsAre(name));
    notifications.authorize(NotificationAuthorization::denied);
    EXPECT_THAT(pending(), IsEmpty());
    notifications.authorize(NotificationAuthorization::authorized);
    EXPECT_THAT(pending(), ElementsAre(name));
    task.setCompleted(true, clock.now());
    EXPECT_THAT(pending(), IsEmpty());
}

TEST_F(NotificationServiceTest, followsWhoeverWritesTheSettingsAndTheDesktop) {
    service.reschedule(add("Before it follows", "2026-01-15T12:30:00Z").id());
    EXPECT_THAT(notifications.pending(), IsEmpty());
    service.follow();
    waitForPending(1);
    const std::size_t before = notifications.removals;
    for (int i = 0; i < 10; ++i) {
        addByAnother(100);
        queue.advance(100ms);
    }
    queue.advance(6s);
    waitForPending(1001);
    EXPECT_EQ(notifications.removals, before + 1) << "a burst is one refresh";
    EXPECT_LE(queue.timerCount(), 3U) << "one timer for all that is pending";
    const auto statements = container->executedStatements();
    EXPECT_EQ(dueNotifications(*container, {}, calendar, clock.now()).size(), 1001U);
    EXPECT_LE(container->executedStatements() - statements, 2U) << "however many tasks";

    settings.set("notificationsEnabled", false);
    waitForPending(0);
    settings.set("notificationsEnabled", true);
    waitForPending(1001);
    settings.set("notificationHour", 9); // 14:00Z
    waitForPending(1001);
    notifications.authorize(NotificationAuthorization::denied);
    waitForPending(0);
    notifications.authorize(NotificationAuthorization::authorized);
    waitForPending(1001);
    queue.advance(26h - 1min);
    EXPECT_EQ(notifications.shown.size(), 1U);
    queue.advance(1min);
    EXPECT_EQ(notifications.shown.size(), 1001U);
}

TEST_F(NotificationServiceTest, clicksDoWhatTheySay) {
    const UUID id = add("Offer", "2026-01-15T12:30:00Z").id();
    const auto task = [&]() -> ProjectTask& { return *context.find<ProjectTask>(id); };
    std::string started, opened;
    service.onStart = [&](const ProjectTask& chosen) { started = chosen.title(); };
    service.onOpen = [&](const UUID& chosen, const std::string& token) { opened = chosen.string() + token; };
    service.schedule(task(), 8, 0);
    queue.advance(1h);
    for (const char* action : {"start", "default", "done"})
        notifications.choose(action, "1a");
    EXPECT_EQ(started, "Offer");
    EXPECT_EQ(opened, id.string() + "1a");
    EXPECT_EQ(task().completedAt(), clock.now());
    EXPECT_FALSE(context.hasChanges());
    queue.advance(1h);
    notifications.choose("done");
    EXPECT_NE(task().completedAt(), clock.now()) << "it was done already";
    context.remove(task());
    context.save();
    notifications.choose("done"); // of one that is gone
}

} // namespace
} // namespace quillorn
