#include "Store/MainContext.h"

#include "Models/Client.h"
#include "Models/Project.h"
#include "Models/ProjectTask.h"
#include "Models/Tag.h"
#include "Support/FakeClock.h"
#include "Support/ManualQueue.h"
#include "Support/TestRecords.h"
#include "Support/TestStore.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace quillorn {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class MainContextTest : public testing::Test {
  protected:
    MainContextTest() {
        main.addListener([this](const ChangeSet* saved) { told.push_back(saved != nullptr ? "own" : "file"); });
        auto& owner = make<Project>(context, {.name = "P"});
        task = &make<ProjectTask>(context, {.title = "T", .project = &owner});
        task->setTags({&make<Tag>(context, {.name = "old"})});
        context.save();
        settle();
        told.clear();
    }
    void settle() { queue.advance(MainContext::period); }
    void elsewhere(const std::function<void(ModelContext&)>& work) {
        ModelContext other(*store.container);
        work(other);
        other.save();
    }

    TestStore store;
    FakeClock clock;
    ManualQueue queue{clock};
    MainContext main{*store.container, queue, store.log};
    ModelContext& context = main.context();
    ProjectTask* task;
    std::vector<std::string> told;
};

TEST_F(MainContextTest, showsWhatOthersSaveInPlace) {
    EXPECT_THAT(namesOf(task->tags()), ElementsAre("old"));
    EXPECT_EQ(task->project()->taskCount(), 1U);
    elsewhere([&](ModelContext& other) {
        auto& same = *other.find<ProjectTask>(task->id());
        same.setTitle("T2");
        same.setTags({&make<Tag>(other, {.name = "new"})});
        make<ProjectTask>(other, {.title = "Second", .project = same.project()});
    });
    EXPECT_EQ(task->title(), "T");
    queue.runPosted();
    EXPECT_EQ(told, std::vector<std::string>{"own"});
    EXPECT_EQ(task->title(), "T2");
    EXPECT_THAT(namesOf(task->tags()), ElementsAre("new"));
    EXPECT_EQ(task->project()->taskCount(), 2U);

    elsewhere([&](ModelContext& other) { other.remove(*other.find<Project>(task->project()->id())); });
    queue.runPosted();
    EXPECT_TRUE(task->isDeleted());
    EXPECT_THAT(context.fetch<ProjectTask>(), IsEmpty());
}

TEST_F(MainContextTest, keepsWhatIsNotSavedYetAndSavesItSoon) {
    task->setTitle("Mine");
    elsewhere([&](ModelContext& other) {
        auto& same = *other.find<ProjectTask>(task->id());
        same.setTitle("Theirs");
        same.setPriority(TaskPriority::urgent);
    });
    queue.runPosted();
    EXPECT_EQ(task->title(), "Mine");
    EXPECT_EQ(task->priority(), TaskPriority::urgent);
    settle();
    EXPECT_FALSE(context.hasChanges());
    ModelContext other(*store.container);
    EXPECT_EQ(other.find<ProjectTask>(task->id())->title(), "Mine");

    // A record that goes meanwhile takes its unsaved changes along.
    task->setTitle("Late");
    elsewhere([&](ModelContext& third) { third.remove(*third.find<ProjectTask>(task->id())); });
    settle();
    EXPECT_TRUE(task->isDeleted());
    EXPECT_FALSE(context.hasChanges());
    EXPECT_THAT(store.log.lines(), IsEmpty());
}

TEST_F(MainContextTest, noticesCommitsOfOtherProcessesAndNothingElse) {
    settle();
    EXPECT_THAT(told, IsEmpty());
    ForeignConnection(store.file()).execute("UPDATE ProjectTask SET title = 'Foreign'");
    settle();
    EXPECT_EQ(told, std::vector<std::string>{"file"});
    EXPECT_EQ(task->title(), "Foreign");
    settle();
    EXPECT_EQ(told.size(), 1U);
}

TEST_F(MainContextTest, refreshesInAConstantNumberOfStatements) {
    const auto cost = [&](int count) {
        for (int i = 0; i < count; ++i)
            make<ProjectTask>(context, {.title = "More"});
        context.save();
        const std::uint64_t before = store.container->executedStatements();
        context.refresh();
        return store.container->executedStatements() - before;
    };
    const std::uint64_t few = cost(10);
    EXPECT_EQ(cost(1000), few);
}

TEST_F(MainContextTest, holdsNoSnapshotBetweenTurns) {
    context.fetch<ProjectTask>();
    settle();
    // A checkpoint that starts the log over needs that nobody reads the old one.
    ForeignConnection foreign(store.file());
    EXPECT_EQ(foreign.integer("PRAGMA wal_checkpoint(TRUNCATE)"), 0);
}

TEST_F(MainContextTest, reportsAFailureOnceAndTriesAgain) {
    ForeignConnection foreign(store.file());
    foreign.execute("CREATE TRIGGER refuse BEFORE UPDATE ON ProjectTask BEGIN SELECT RAISE(ABORT, 'not now'); END");
    task->setTitle("Later");
    settle();
    settle();
    ASSERT_EQ(store.log.lines().size(), 1U);
    EXPECT_NE(store.log.lines()[0].find("not now"), std::string::npos);
    EXPECT_TRUE(context.hasChanges());
    foreign.execute("DROP TRIGGER refuse");
    settle();
    EXPECT_FALSE(context.hasChanges());
}

} // namespace
} // namespace quillorn
