#include "Store/MainContext.h"

#include "Support/FakeClock.h"
#include "Support/ManualQueue.h"
#include "Support/TestRecords.h"
#include "Support/TestStore.h"

#include <gmock/gmock.h>

namespace quillorn {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

struct MainContextTest : testing::Test, TestStore {
    MainContextTest() {
        main.addListener([this](const ChangeSet* saved) { told.push_back(saved != nullptr ? "own" : "file"); });
        task = &make<ProjectTask>(context, {.title = "T", .project = &make<Project>(context, {.name = "P"})});
        task->setTags({&make<Tag>(context, {.name = "old"})});
        context.save();
        settle();
        told.clear();
    }
    void settle() { queue.advance(MainContext::period); }
    /// What another context of this process does with the task.
    void elsewhere(const std::function<void(ModelContext&, ProjectTask&)>& work) {
        change(*container, [&](ModelContext& other) { work(other, *other.find<ProjectTask>(task->id())); });
    }

    FakeClock clock;
    ManualQueue queue{clock};
    MainContext main{*container, queue, log};
    ModelContext& context = main.context();
    ProjectTask* task;
    std::vector<std::string> told;
};

TEST_F(MainContextTest, showsWhatOthersSaveInPlace) {
    EXPECT_THAT(namesOf(task->tags()), ElementsAre("old"));
    EXPECT_EQ(task->project()->tasks().size(), 1U);
    elsewhere([](ModelContext& other, ProjectTask& same) {
        same.setTitle("T2");
        same.setTags({&make<Tag>(other, {.name = "new"})});
        make<ProjectTask>(other, {.title = "Second", .project = same.project()});
    });
    EXPECT_EQ(task->title(), "T");
    queue.runPosted();
    EXPECT_THAT(told, ElementsAre("own"));
    EXPECT_EQ(task->title(), "T2");
    EXPECT_THAT(namesOf(task->tags()), ElementsAre("new"));
    EXPECT_EQ(task->project()->tasks().size(), 2U);

    elsewhere([](ModelContext& other, ProjectTask& same) { other.remove(*same.project()); });
    queue.runPosted();
    EXPECT_TRUE(task->isDeleted());
    EXPECT_THAT(context.fetch<ProjectTask>(), IsEmpty());
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

TEST_F(MainContextTest, noticesCommitsOfOtherProcessesAndNothingElse) {
    settle();
    EXPECT_THAT(told, IsEmpty());
    ForeignConnection(file()).execute("UPDATE ProjectTask SET title = 'Foreign'");
    settle();
    settle();
    EXPECT_THAT(told, ElementsAre("file"));
    EXPECT_EQ(task->title(), "Foreign");
}

TEST_F(MainContextTest, refreshesInAConstantNumberOfStatements) {
    const auto cost = [&](int count) {
        while (count-- > 0)
            make<ProjectTask>(context);
        context.save();
        const std::uint64_t before = container->executedStatements();
        context.refresh();
        return container->executedStatements() - before;
    };
    const std::uint64_t few = cost(10);
    EXPECT_EQ(cost(1000), few);
}

TEST_F(MainContextTest, holdsNoSnapshotBetweenTurns) {
    context.fetch<ProjectTask>();
    settle();
    // A checkpoint that starts the log over needs that nobody reads the old one.
    EXPECT_EQ(ForeignConnection(file()).integer("PRAGMA wal_checkpoint(TRUNCATE)"), 0);
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
