#include "Services/TimerService.h"

#include "Models/Project.h"
#include "Models/ProjectTask.h"
#include "Models/TimeEntry.h"
#include "Store/MainContext.h"
#include "Support/FakeClock.h"
#include "Support/ManualQueue.h"
#include "Support/TestRecords.h"
#include "Support/TestStore.h"

#include <gtest/gtest.h>

namespace quillorn {
namespace {

using namespace std::chrono_literals;

class TimerServiceTest : public testing::Test {
  protected:
    TimerServiceTest() {
        main.addListener([this](const ChangeSet* saved) { timer.storeDidChange(saved, context); });
        a = make<ProjectTask>(context, {.title = "A"}).id();
        b = make<ProjectTask>(context, {.title = "B"}).id();
        context.save();
        queue.runPosted();
    }

    ProjectTask& task(const UUID& id) { return *context.find<ProjectTask>(id); }
    TimeEntry& entryOf(const UUID& id) { return **task(id).timeEntries().begin(); }
    /// What another surface of this process does: a context of its own.
    void elsewhere(const std::function<void(ModelContext&)>& work) { write(*store.container, work); }
    /// The same by another process: a container of its own, whose notifications this one does not get.
    void inAnotherProcess(const std::function<void(ModelContext&)>& work) {
        StoreSurroundings surroundings;
        write(*surroundings.open(store.file()), work);
    }
    /// Lets the main context notice.
    void settle() { queue.advance(1s); }
    std::size_t runningEntries() { return context.fetch<TimeEntry>({.where = "endTime IS NULL"}).size(); }

    TestStore store;
    FakeClock clock;
    ManualQueue queue{clock};
    MainContext main{*store.container, queue, store.log};
    ModelContext& context = main.context();
    TimerService timer{store.notifications, queue, clock};
    UUID a;
    UUID b;

  private:
    static void write(ModelContainer& container, const std::function<void(ModelContext&)>& work) {
        ModelContext other(container);
        work(other);
        other.save();
    }
};

TEST_F(TimerServiceTest, startsTicksAndStops) {
    const Date start = clock.now();
    int changes = 0;
    timer.onChange = [&] { ++changes; };
    timer.start(task(a), context);
    EXPECT_TRUE(timer.isRunning());
    EXPECT_TRUE(timer.isActive(task(a)));
    EXPECT_FALSE(timer.isActive(task(b)));
    EXPECT_EQ(timer.activeEntry(context), &entryOf(a));
    EXPECT_EQ(timer.elapsedTime(), 0);
    EXPECT_EQ(task(a).status(), TaskStatus::inProgress);
    EXPECT_TRUE(context.hasChanges()) << "starting leaves the saving to others";

    queue.advance(3s);
    EXPECT_FALSE(context.hasChanges()) << "the main context saves by itself";
    EXPECT_EQ(timer.elapsedTime(), 3);
    EXPECT_GE(changes, 4);
    // A machine that slept: the next tick is late and right.
    clock.advance(1h);
    queue.advance(1s);
    EXPECT_EQ(timer.elapsedTime(), 3604);

    timer.stop(context);
    EXPECT_FALSE(context.hasChanges());
    EXPECT_EQ(entryOf(a).startTime(), start);
    EXPECT_EQ(entryOf(a).duration(clock.now()), 3604);
    EXPECT_FALSE(timer.isRunning());
    EXPECT_EQ(timer.elapsedTime(), 0);
    EXPECT_EQ(timer.activeTask(context), nullptr);
    settle();
    EXPECT_FALSE(timer.isRunning());
}

TEST_F(TimerServiceTest, startingOnAnotherTaskEndsTheFirst) {
    timer.start(task(a), context);
    clock.advance(60s);
    timer.start(task(b), context);
    EXPECT_EQ(entryOf(a).endTime(), clock.now());
    EXPECT_TRUE(entryOf(b).isRunning());
    EXPECT_TRUE(timer.isActive(task(b)));
    timer.toggle(task(a), context);
    EXPECT_TRUE(timer.isActive(task(a)));
    timer.toggle(task(a), context);
    EXPECT_FALSE(timer.isRunning());
    EXPECT_EQ(runningEntries(), 0U);
}

TEST_F(TimerServiceTest, startingReopensACompletedTask) {
    task(a).setCompleted(true, clock.now());
    queue.runPosted();
    timer.start(task(a), context);
    EXPECT_FALSE(task(a).isCompleted());
    EXPECT_EQ(task(a).status(), TaskStatus::inProgress);
}

TEST_F(TimerServiceTest, theStartCanBeAdjustedWhileItRuns) {
    timer.adjustStart(clock.now(), context); // nothing runs
    timer.start(task(a), context);
    const Date earlier = clock.now() - 10min;
    timer.adjustStart(earlier, context);
    EXPECT_EQ(timer.elapsedTime(), 600);
    EXPECT_EQ(timer.startTime(), earlier);
    EXPECT_EQ(entryOf(a).startTime(), earlier);
    EXPECT_FALSE(context.hasChanges());
}

TEST_F(TimerServiceTest, aLaunchTakesUpTheLatestRunningEntry) {
    timer.resumeRunningEntry(context);
    EXPECT_FALSE(timer.isRunning());
    elsewhere([&](ModelContext& other) {
        make<TimeEntry>(other, {.task = other.find<ProjectTask>(a), .startTime = clock.now() - 48h});
        make<TimeEntry>(other, {.startTime = clock.now() - 24h});
        auto& ended = make<TimeEntry>(other, {.task = other.find<ProjectTask>(b), .startTime = clock.now() - 1h});
        ended.setEndTime(clock.now());
    });
    settle();
    EXPECT_FALSE(timer.isRunning()) << "entries of programs are not the timer's";
    timer.resumeRunningEntry(context);
    EXPECT_EQ(timer.startTime(), clock.now() - 1s - 24h);
    EXPECT_EQ(timer.activeTask(context), nullptr);
    EXPECT_EQ(timer.elapsedTime(), 24 * 3600 + 1);
    timer.stop(context);
    settle();
    EXPECT_FALSE(timer.isRunning()) << "the earlier one stays unattached";
    EXPECT_EQ(runningEntries(), 1U);
}

TEST_F(TimerServiceTest, completingTheTaskResetsAndEndsTheEntryOnce) {
    timer.start(task(a), context);
    context.save();
    const Date completion = clock.now() + 30s;
    elsewhere([&](ModelContext& other) { other.find<ProjectTask>(a)->setCompleted(true, completion); });
    queue.runPosted();
    EXPECT_FALSE(timer.isRunning());
    EXPECT_EQ(entryOf(a).endTime(), completion);
    // Of another task it is no business of the timer.
    timer.start(task(b), context);
    task(a).setCompleted(false, clock.now());
    task(a).setCompleted(true, clock.now());
    queue.runPosted();
    EXPECT_TRUE(timer.isActive(task(b)));
    // Notifications without a proper id are passed over.
    for (const std::any& id : {std::any(), std::any(b.string())})
        store.notifications.post({std::string(quillornTaskCompleted), {}, {{"taskId", id}}});
    store.notifications.post({std::string(quillornTaskCompleted), {}, {}});
    queue.runPosted();
    EXPECT_TRUE(timer.isRunning());
}

TEST_F(TimerServiceTest, staysTrueToWhatOthersDoToItsEntry) {
    struct Case {
        const char* what;
        std::function<void(ModelContext&)> work;
        bool runsOn;
    };
    const Case cases[] = {
        {"ended", [&](ModelContext& other) { other.fetch<TimeEntry>().back()->setEndTime(clock.now()); }, false},
        {"deleted", [&](ModelContext& other) { other.remove(*other.fetch<TimeEntry>().back()); }, false},
        {"task deleted", [&](ModelContext& other) { other.remove(*other.find<ProjectTask>(a)); }, false},
        {"start moved", [&](ModelContext& other) { other.fetch<TimeEntry>().back()->setStartTime(clock.now() - 1h); },
         true},
        {"task taken away", [&](ModelContext& other) { other.fetch<TimeEntry>().back()->setTask(nullptr); }, true},
        {"title changed", [&](ModelContext& other) { other.find<ProjectTask>(a)->setTitle("A!"); }, true},
    };
    for (const bool byAnotherProcess : {false, true}) {
        for (const Case& each : cases) {
            SCOPED_TRACE(each.what);
            a = make<ProjectTask>(context, {.title = "A"}).id();
            timer.start(task(a), context);
            context.save();
            settle();
            byAnotherProcess ? inAnotherProcess(each.work) : elsewhere(each.work);
            settle();
            EXPECT_EQ(timer.isRunning(), each.runsOn);
            if (each.runsOn) {
                const TimeEntry* entry = timer.activeEntry(context);
                EXPECT_EQ(timer.startTime(), entry->startTime());
                EXPECT_EQ(timer.activeTask(context), entry->task());
            }
            timer.stop(context);
            EXPECT_EQ(timer.isRunning(), false);
        }
    }
}

TEST_F(TimerServiceTest, followsATimerOfAnotherProcess) {
    // As "quillorn timer start" does it there: its own service, on the same store.
    const auto commandLine = [&](const std::function<void(TimerService&, ModelContext&)>& work) {
        inAnotherProcess([&](ModelContext& other) {
            TimerService service(store.notifications, queue, clock);
            service.resumeRunningEntry(other);
            work(service, other);
        });
    };
    commandLine([&](TimerService& service, ModelContext& other) { service.start(*other.find<ProjectTask>(a), other); });
    settle();
    EXPECT_TRUE(timer.isActive(task(a)));
    commandLine([&](TimerService& service, ModelContext& other) { service.start(*other.find<ProjectTask>(b), other); });
    settle();
    EXPECT_TRUE(timer.isActive(task(b)));
    EXPECT_EQ(runningEntries(), 1U);
    commandLine([](TimerService& service, ModelContext& other) { service.stop(other); });
    settle();
    EXPECT_FALSE(timer.isRunning());
    EXPECT_EQ(runningEntries(), 0U);
}

} // namespace
} // namespace quillorn
