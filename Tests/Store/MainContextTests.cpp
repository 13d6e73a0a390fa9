#include "Store/MainContext.h"

#include "Platform/FileWatch.h"
#include "Store/Held.h"
#include "Store/ReplaceContents.h"
#include "Store/StoreError.h"
#include "StoreWorker.h"
#include "Support/FakeClock.h"
#include "Support/ManualQueue.h"
#include "Support/ScopedLimit.h"
#include "Support/TestRecords.h"
#include "Support/TestStore.h"

#include <future>
#include <gmock/gmock.h>

namespace quillorn {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;
using Work = std::function<void(ModelContext&, ProjectTask&)>;

struct MainContextTest : testing::Test, TestStore {
    MainContextTest() {
        task = Held(make<ProjectTask>(context, {.title = "T", .project = &make<Project>(context, {.name = "P"})}));
        task->setTags({&make<Tag>(context, {.name = "old"})});
        context.save();
        settle();
        told.clear();
    }
    void settle() { queue.advance(MainContext::savingDelay); }
    /// What another context of this process does with the task.
    void elsewhere(const Work& work) { doWithTask(*container, work); }
    /// And another process: a container of its own, of which this one hears by the file alone.
    void inAnotherProcess(const Work& work) {
        doWithTask(*StoreSurroundings().open(file()), work);
        main.noticeFileChange();
    }
    void doWithTask(ModelContainer& somewhere, const Work& work) {
        change(somewhere, [&](ModelContext& other) { work(other, *other.find<ProjectTask>(task->id())); });
    }

    FakeClock clock;
    ManualQueue queue{clock};
    MainContext main{*container, queue, log};
    ModelContext& context = main.context();
    Held<ProjectTask> task;
    std::vector<ChangeSet> told;
    Observation token = main.observe([this](const ChangeSet& changes) { told.push_back(changes); });
};

TEST_F(MainContextTest, followsInPlaceWhateverOthersDo) {
    auto& second = make<Project>(context, {.name = "Second"});
    auto& child = make<ProjectTask>(context, {.title = "child"});
    child.setParentTask(task.get());
    context.save();
    settle();
    const Held heldSecond(second);
    const Held heldChild(child);
    /// What can be seen from here, with every relation loaded.
    const auto seen = [&](ModelContext& of) {
        std::string text;
        for (ProjectTask* each : of.fetch<ProjectTask>()) {
            text += each->title() + "<" + (each->project() ? each->project()->name() : "") + "<" +
                    (each->parentTask() ? each->parentTask()->title() : "") + ":";
            for (const auto& names : {namesOf(each->tags()), namesOf(each->subtasks()), namesOf(each->timeEntries())})
                for (const std::string& name : names)
                    text += name + ",";
        }
        for (Project* each : of.fetch<Project>())
            text += each->name() + ":" + std::to_string(each->tasks().size());
        for (Tag* each : of.fetch<Tag>())
            text += each->name() + ":" + std::to_string(each->tasks().size());
        return text;
    };
    const Work cases[] = {
        [](ModelContext&, ProjectTask& same) { same.setTitle("T2"); },
        [](ModelContext& other, ProjectTask& same) { same.setTags({&make<Tag>(other, {.name = "new"})}); },
        [](ModelContext& other, ProjectTask& same) {
            make<ProjectTask>(other, {.title = "more", .project = same.project()});
        },
        [](ModelContext& other, ProjectTask& same) { same.setProject(&named<Project>(other, "Second")); },
        [](ModelContext& other, ProjectTask& same) { make<TimeEntry>(other, {.task = &same, .title = "entry"}); },
        [](ModelContext& other, ProjectTask& same) { named<ProjectTask>(other, "more").setParentTask(&same); },
        [](ModelContext& other, ProjectTask& same) { other.remove(**same.timeEntries().begin()); },
        [](ModelContext& other, ProjectTask&) { other.remove(named<Tag>(other, "new")); },
        [](ModelContext& other, ProjectTask& same) {
            same.setProject(nullptr), other.remove(named<Project>(other, "P"));
        },
        [](ModelContext& other, ProjectTask& same) { other.remove(same); },
    };
    for (std::size_t i = 0; i < std::size(cases); ++i) {
        SCOPED_TRACE(i);
        seen(context);
        told.clear();
        i % 2 == 0 ? elsewhere(cases[i]) : inAnotherProcess(cases[i]);
        queue.runPosted();
        ModelContext fresh(*container);
        EXPECT_EQ(seen(context), seen(fresh));
        ASSERT_THAT(told, SizeIs(1));
        EXPECT_FALSE(told[0].isEverything);
        EXPECT_EQ(told[0].includesOthers(), i % 2 == 1);
    }
    EXPECT_TRUE(task->isDeleted());
    EXPECT_EQ(child.parentTask(), nullptr);
}

TEST_F(MainContextTest, costsWhatHasChangedAndOnceATurn) {
    for (int i = 0; i < 1000; ++i)
        make<ProjectTask>(context, {.title = std::to_string(i)});
    context.save();
    settle();
    const auto all = context.fetch<ProjectTask>();
    const std::vector<Held<ProjectTask>> held = [&] {
        std::vector<Held<ProjectTask>> each;
        for (ProjectTask* one : all)
            each.emplace_back(*one);
        return each;
    }();
    told.clear();
    for (int i = 0; i < 20; ++i)
        elsewhere([&](ModelContext&, ProjectTask& same) { same.setTitle("after " + std::to_string(i)); });
    std::uint64_t before = container->executedStatements();
    queue.runPosted();
    EXPECT_LE(container->executedStatements() - before, 8U);
    ASSERT_THAT(told, SizeIs(1));
    EXPECT_THAT(told[0].rows, SizeIs(1));
    EXPECT_EQ(task->title(), "after 19");
    // Its own commit comes back as news for those who observe, not for its objects.
    task->setTitle("mine");
    EXPECT_TRUE(main.save());
    queue.runPosted();
    EXPECT_THAT(told, SizeIs(2));
    // What is at hand is not asked for.
    before = container->executedStatements();
    for (const ProjectTask* one : all) {
        EXPECT_EQ(context.find<ProjectTask>(one->id()), one);
        EXPECT_EQ(context.find<ProjectTask>(one->key()), one);
    }
    EXPECT_EQ(container->executedStatements(), before);
}

TEST_F(MainContextTest, letsGoOfWhatNobodyHolds) {
    const auto countOfObjects = [&] {
        const auto before = container->executedStatements();
        std::size_t count = 0;
        for (RowKey key = 1; key <= 4; ++key)
            count += context.find<ProjectTask>(key) != nullptr && container->executedStatements() == before ? 1 : 0;
        return count;
    };
    for (int i = 0; i < 3; ++i)
        make<ProjectTask>(context, {.title = "loose"});
    context.save();
    namesOf(task->tags());
    EXPECT_EQ(countOfObjects(), 4U);
    make<Note>(context, {.title = "unsaved", .task = task.get()});
    queue.advance(MainContext::restingTime);
    const auto before = container->executedStatements();
    EXPECT_THAT(namesOf(task->tags()), ElementsAre("old"));
    EXPECT_EQ(task->project()->name(), "P");
    EXPECT_EQ(container->executedStatements(), before) << "with what it had loaded";
    EXPECT_EQ(countOfObjects(), 1U);
    EXPECT_THAT(namesOf(task->notes()), ElementsAre("unsaved"));
    EXPECT_THAT(namesOf(task->project()->tasks()), ElementsAre("T"));
}

TEST_F(MainContextTest, keepsWhatIsNotSavedYetAndSavesItSoon) {
    task->setTitle("Mine");
    elsewhere([](ModelContext&, ProjectTask& same) {
        same.setTitle("Theirs");
        same.setPriority(TaskPriority::urgent);
    });
    queue.runPosted();
    EXPECT_EQ(task->title(), "Mine");
    EXPECT_EQ(task->priority(), TaskPriority::urgent);
    settle();
    EXPECT_FALSE(context.hasChanges());
    elsewhere([](ModelContext&, ProjectTask& same) { EXPECT_EQ(same.title(), "Mine"); });

    // A record that goes meanwhile takes its unsaved changes along.
    task->setTitle("Late");
    elsewhere([](ModelContext& other, ProjectTask& same) { other.remove(same); });
    settle();
    EXPECT_TRUE(task->isDeleted());
    EXPECT_FALSE(context.hasChanges());
    EXPECT_THAT(log.lines(), IsEmpty());
}

TEST_F(MainContextTest, noticesWhatCannotBeTold) {
    const std::pair<const char*, std::function<void()>> cases[] = {
        {"a program that knows nothing of the log",
         [&] { ForeignConnection(file()).execute("UPDATE ProjectTask SET title = 'new'"); }},
        {"one that has removed it",
         [&] {
             ForeignConnection(file()).execute("DROP TRIGGER ChangeLog_ProjectTask_updated;"
                                               "UPDATE ProjectTask SET title = 'new'");
             open();
         }},
        {"more than the log holds",
         [&] {
             inAnotherProcess([](ModelContext& other, ProjectTask& same) {
                 same.setTitle("new");
                 for (int i = 0; i < 6000; ++i)
                     make<Tag>(other);
             });
         }},
        {"a restore",
         [&] {
             TestStore source;
             change(*source.container, [](ModelContext& other) { make<ProjectTask>(other, {.title = "new"}); });
             replaceStoreContents(*source.container, *container);
         }},
    };
    for (const auto& [what, work] : cases) {
        SCOPED_TRACE(what);
        task->setTitle("old");
        EXPECT_TRUE(main.save());
        queue.runPosted();
        told.clear();
        work();
        queue.advance(MainContext::restingTime); // nobody has told
        ASSERT_THAT(told, testing::Not(IsEmpty()));
        EXPECT_EQ(told.back().isEverything, what != cases[0].first);
        EXPECT_THAT(namesOf(context.fetch<ProjectTask>()), ElementsAre("new"));
    }
    EXPECT_LE(ForeignConnection(file()).integer("SELECT count(*) FROM ChangeLog"), 6000);
}

TEST_F(MainContextTest, hearsOfAnotherProcessByTheFile) {
    StoreWorker worker(file());
    worker.ask("increment 0"); // it has opened the store
    std::promise<void> heard;
    std::atomic<bool> isHeard = false;
    const auto watch = watchFile(file().string() + "-wal", [&] {
        main.noticeFileChange();
        if (!isHeard.exchange(true))
            heard.set_value();
    });
    ASSERT_NE(watch, nullptr);
    EXPECT_EQ(worker.ask("increment 1"), "ok");
    ASSERT_EQ(heard.get_future().wait_for(30s), std::future_status::ready);
    queue.advance(1s);
    ASSERT_THAT(told, SizeIs(1));
    EXPECT_TRUE(told[0].includesOthers());
    EXPECT_EQ(task->sortOrder(), 1);
}

TEST_F(MainContextTest, triesAgainUntilItHasFollowed) {
    if (isSanitized)
        GTEST_SKIP() << "UBSan opens a pipe to look at an object of a class that is new to it";
    const auto failing = main.observe([](const ChangeSet&) { throw std::runtime_error("deaf"); });
    int heard = 0;
    const auto behind = main.observe([&](const ChangeSet&) { ++heard; });
    container->releaseUnusedMemory();
    container->releaseUnusedMemory();
    {
        ModelContext busy(*container); // has the only connection that rests
        busy.fetch<Tag>();
        inAnotherProcess([](ModelContext&, ProjectTask& same) { same.setTitle("new"); });
        const NoDescriptors none;
        queue.runPosted();
        EXPECT_EQ(heard, 0);
        EXPECT_THAT(log.lines(), ElementsAre(HasSubstr("The store could not be read or saved")));
    }
    queue.advance(1s);
    EXPECT_EQ(heard, 1);
    EXPECT_EQ(task->title(), "new");
    EXPECT_THAT(log.lines(), SizeIs(2)) << "and once of the observer that fails";
}

TEST_F(MainContextTest, neverWaitsForAnotherWriter) {
    {
        const ModelContext writer(*container, ModelContext::Intent::update);
        task->setTitle("Later");
        const auto start = std::chrono::steady_clock::now();
        EXPECT_FALSE(main.save());
        EXPECT_THROW(context.save(), StoreBusyError);
        queue.advance(20s);
        EXPECT_LT(std::chrono::steady_clock::now() - start, 5s);
        EXPECT_TRUE(context.hasChanges());
        EXPECT_EQ(task->title(), "Later");
    }
    while (context.hasChanges()) // without a further call: its turn is posted
        queue.runPosted();
    EXPECT_THAT(log.lines(), IsEmpty());
}

TEST_F(MainContextTest, restsWhenNothingHappens) {
    const std::size_t resting = queue.timerCount();
    EXPECT_EQ(resting, 1U);
    inAnotherProcess([](ModelContext&, ProjectTask& same) { same.setTitle("T2"); });
    task->setPriority(TaskPriority::low);
    queue.advance(2s);
    EXPECT_EQ(queue.timerCount(), resting);
    // It holds no snapshot then: a checkpoint that starts the log over needs that nobody reads the old one.
    context.fetch<ProjectTask>();
    queue.runPosted();
    EXPECT_EQ(ForeignConnection(file()).integer("PRAGMA wal_checkpoint(TRUNCATE)"), 0);
    told.clear();
    queue.advance(MainContext::restingTime);
    EXPECT_THAT(told, IsEmpty()) << "which is no change";
}

TEST_F(MainContextTest, reportsAFailureOnceAndTriesAgain) {
    ForeignConnection foreign(file());
    foreign.execute("CREATE TRIGGER refuse BEFORE UPDATE ON ProjectTask BEGIN SELECT RAISE(ABORT, 'not now'); END");
    task->setTitle("Later");
    settle();
    settle();
    EXPECT_THAT(log.lines(), ElementsAre(HasSubstr("not now")));
    EXPECT_TRUE(context.hasChanges());
    foreign.execute("DROP TRIGGER refuse");
    settle();
    EXPECT_FALSE(context.hasChanges());
}

} // namespace
} // namespace quillorn
