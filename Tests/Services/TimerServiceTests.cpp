#include "Services/TimerService.h"

#include "Models/Project.h"
#include "Store/MainContext.h"
#include "Store/ReplaceContents.h"
#include "Support/FakeClock.h"
#include "Support/ManualQueue.h"
#include "Support/TestRecords.h"
#include "Support/TestStore.h"

#include <gtest/gtest.h>

namespace quillorn {
namespace {

using namespace std::chrono_literals;
using Work = std::function<void(ModelContext&)>;

struct TimerServiceTest : testing::Test, TestStore {
    TimerServiceTest() {
        a = make<ProjectTask>(context, {.title = "A"}).id();
        b = make<ProjectTask>(context, {.title = "B"}).id();
        context.save();
        queue.runPosted();
    }

    ProjectTask& task(const UUID& id) { return *context.find<ProjectTask>(id); }
    TimeEntry& entryOf(const UUID& id) { return **task(id).timeEntries().begin(); }
    /// What another process does: a container of its own, whose notifications this one does not get.
    void inAnotherProcess(const Work& work) {
        change(*StoreSurroundings().open(file()), work);
        main.noticeFileChange();
    }
    /// Lets the main context notice.
    void settle() { queue.advance(1s); }
    std::size_t runningEntries() { return context.fetch<TimeEntry>({.where = "endTime IS NULL"}).size(); }

    FakeClock clock;
    ManualQueue queue{clock};
    MainContext main{*container, queue, log};
    ModelContext& context = main.context();
    TimerService timer{queue, clock};
    Observation following = main.observe([this](const ChangeSet& changes) { timer.storeDidChange(changes, context); });
    UUID a, b;
};

TEST_F(TimerServiceTest, startsTicksAndStops) {
    task(a).setCompleted(true, clock.now());
    settle();
    const Date start = clock.now();
    const std::size_t timers = queue.timerCount();
    int changes = 0;
    const Observation state = timer.observe([&] { ++changes; });
    timer.adjustStart(start, context); // nothing runs
    timer.start(task(a), context);
    EXPECT_TRUE(timer.isRunning() && timer.isActive(task(a)) && !timer.isActive(task(b)));
    EXPECT_EQ(timer.activeEntry(context), &entryOf(a));
    EXPECT_EQ(timer.elapsedTime(), 0);
    EXPECT_EQ(task(a).status(), TaskStatus::inProgress);
    EXPECT_FALSE(task(a).isCompleted());
    EXPECT_TRUE(context.hasChanges()) << "starting leaves the saving to others";

    queue.advance(3s);
    EXPECT_FALSE(context.hasChanges()) << "the main context saves by itself";
    EXPECT_EQ(timer.elapsedTime(), 3);
    EXPECT_GE(changes, 4);
    // A machine that slept: the next tick is late and right.
    clock.advance(1h);
    queue.advance(1s);
    EXPECT_EQ(timer.elapsedTime(), 3604);
    timer.adjustStart(start - 10min, context);
    EXPECT_EQ(timer.elapsedTime(), 4204);
    EXPECT_EQ(timer.startTime(), start - 10min);
    EXPECT_FALSE(context.hasChanges());

    timer.stop(context);
    EXPECT_FALSE(context.hasChanges());
    EXPECT_EQ(entryOf(a).startTime(), start - 10min);
    EXPECT_EQ(entryOf(a).endTime(), clock.now());
    EXPECT_EQ(timer.elapsedTime(), 0);
    EXPECT_EQ(timer.activeTask(context), nullptr);
    settle();
    EXPECT_FALSE(timer.isRunning());
    EXPECT_EQ(queue.timerCount(), timers);
}

TEST_F(TimerServiceTest, startingOnAnotherTaskEndsTheFirst) {
    timer.start(task(a), context);
    clock.advance(60s);
    timer.start(task(b), context);
    EXPECT_EQ(entryOf(a).endTime(), clock.now());
    EXPECT_TRUE(entryOf(b).isRunning() && timer.isActive(task(b)));
    timer.toggle(task(a), context);
    EXPECT_TRUE(timer.isActive(task(a)));
    timer.toggle(task(a), context);
    EXPECT_FALSE(timer.isRunning());
    EXPECT_EQ(runningEntries(), 0U);
}

TEST_F(TimerServiceTest, aLaunchTakesUpTheLatestRunningEntry) {
    timer.resumeRunningEntry(context);
    EXPECT_FALSE(timer.isRunning());
    const Date now = clock.now();
    change(*container, [&](ModelContext& other) {
        make<TimeEntry>(other, {.task = other.find<ProjectTask>(a), .startTime = now - 48h});
        make<TimeEntry>(other, {.startTime = now - 24h});
        make<TimeEntry>(other, {.task = other.find<ProjectTask>(b), .startTime = now - 1h}).setEndTime(now);
    });
    settle();
    EXPECT_FALSE(timer.isRunning()) << "entries of programs are not the timer's";
    timer.resumeRunningEntry(context);
    EXPECT_EQ(timer.startTime(), now - 24h);
    EXPECT_EQ(timer.activeTask(context), nullptr);
    EXPECT_EQ(timer.elapsedTime(), 24 * 3600 + 1);
    timer.stop(context);
    settle();
    EXPECT_FALSE(timer.isRunning()) << "the earlier one stays unattached";
    EXPECT_EQ(runningEntries(), 1U);
}

TEST_F(TimerServiceTest, completingTheTaskResetsOnceItIsOnTheDisk) {
    timer.start(task(a), context);
    context.save();
    const Date completion = clock.now() + 30s;
    {
        ModelContext failing(*container);
        failing.find<ProjectTask>(a)->setCompleted(true, completion);
        queue.runPosted();
    }
    EXPECT_TRUE(timer.isActive(task(a))) << "nothing was saved";
    change(*container, [&](ModelContext& other) { other.find<ProjectTask>(a)->setCompleted(true, completion); });
    queue.runPosted();
    EXPECT_FALSE(timer.isRunning());
    EXPECT_EQ(entryOf(a).endTime(), completion);
    // Of another task it is no business of the timer.
    timer.start(task(b), context);
    task(a).setCompleted(false, clock.now());
    task(a).setCompleted(true, clock.now());
    settle();
    EXPECT_TRUE(timer.isActive(task(b)));
}

TEST_F(TimerServiceTest, staysTrueToWhatOthersDoToItsEntry) {
    const auto last = [](ModelContext& other) -> TimeEntry& { return *other.fetch<TimeEntry>().back(); };
    struct Case {
        const char* what;
        Work work;
        bool runsOn;
    };
    const Case cases[] = {
        // clang-format off
        {"ended", [&](ModelContext& other) { last(other).setEndTime(clock.now()); }, false},
        {"deleted", [&](ModelContext& other) { other.remove(last(other)); }, false},
        {"task deleted", [&](ModelContext& other) { other.remove(*other.find<ProjectTask>(a)); }, false},
        {"start moved", [&](ModelContext& other) { last(other).setStartTime(clock.now() - 1h); }, true},
        {"task taken away", [&](ModelContext& other) { last(other).setTask(nullptr); }, true},
        {"title changed", [&](ModelContext& other) { other.find<ProjectTask>(a)->setTitle("A!"); }, true},
        // clang-format on
    };
    for (const bool byAnotherProcess : {false, true}) {
        for (const Case& each : cases) {
            SCOPED_TRACE(each.what);
            a = make<ProjectTask>(context).id();
            timer.start(task(a), context);
            context.save();
            settle();
            byAnotherProcess ? inAnotherProcess(each.work) : change(*container, each.work);
            settle();
            const TimeEntry* entry = timer.activeEntry(context);
            EXPECT_EQ(timer.isRunning(), each.runsOn);
            EXPECT_EQ(entry != nullptr, each.runsOn);
            if (entry != nullptr) {
                EXPECT_EQ(timer.startTime(), entry->startTime());
                EXPECT_EQ(timer.activeTask(context), entry->task());
            }
            timer.stop(context);
        }
    }
}

} // namespace
} // namespace quillorn
