#include "Models/TaskSearch.h"
#include "Models/TaskTotals.h"
#include "Platform/Text.h"
#include "Support/Dice.h"
#include "Support/TestRecords.h"
#include "Support/TestStore.h"

#include <gmock/gmock.h>

namespace quillorn {
namespace {

using namespace std::chrono_literals;

/// Clients, projects and tags of all kinds, and `taskCount` tasks with entries, in chains and in one circle.
void populate(TestStore& store, Dice& dice, std::size_t taskCount) {
    ModelContext context(*store.container);
    std::vector<Client*> clients{nullptr};
    std::vector<Project*> projects{nullptr};
    std::vector<Tag*> tags;
    std::vector<ProjectTask*> tasks;
    for (int i = 0; i < 4; ++i) {
        clients.push_back(&make<Client>(context));
        clients.back()->setArchived(i % 2 == 0);
        tags.push_back(&make<Tag>(context));
    }
    for (int i = 0; i < 12; ++i) {
        projects.push_back(&make<Project>(context));
        projects.back()->setArchived(dice.chance(30));
        projects.back()->setClient(dice.oneOf(clients));
    }
    const std::array<const char*, 4> titles{"Straße", "STRASSE und Weg", "weg", "Café"};
    for (std::size_t i = 0; i < taskCount; ++i) {
        auto& task = make<ProjectTask>(
            context, {.title = titles[dice.below(titles.size())],
                      .dueDate = dice.chance(60) ? std::optional(testNow + dice.below(20) * 1h) : std::nullopt,
                      .priority = static_cast<TaskPriority>(dice.below(4)),
                      .status = static_cast<TaskStatus>(dice.below(4)),
                      .project = dice.oneOf(projects)});
        if (dice.chance(30))
            task.setCompleted(true, testNow);
        // Mostly under the task before, so that the chains grow deep.
        if (!tasks.empty() && dice.chance(90))
            task.setParentTask(dice.chance(80) ? tasks.back() : dice.oneOf(tasks));
        task.setTags({dice.oneOf(tags), dice.oneOf(tags)});
        for (std::size_t entries = dice.below(4); entries > 0; --entries) {
            auto& entry = make<TimeEntry>(
                context, {.task = &task, .startTime = testNow - std::chrono::microseconds(dice.below(100'000'000))});
            if (dice.chance(70))
                entry.setEndTime(entry.startTime() + std::chrono::microseconds(dice.below(100'000'000)));
        }
        tasks.push_back(&task);
    }
    make<TimeEntry>(context, {.project = projects.back(), .startTime = testNow});
    make<Tag>(context);
    context.save();
    // No surface makes a circle, but a damaged store may hold one: 3 under 5, with what is between them.
    ForeignConnection(store.file())
        .execute(
            "UPDATE ProjectTask SET parentTask = 5 WHERE key = 3; UPDATE ProjectTask SET parentTask = 3 WHERE key "
            "= 4; UPDATE ProjectTask SET parentTask = 4 WHERE key = 5; UPDATE ProjectTask SET parentTask = 9 WHERE "
            "key = 9");
}

TEST(TaskTotals, agreeWithTheTasksThemselves) {
    const Date now = testNow + 1min;
    std::vector<std::uint64_t> costs;
    for (const std::size_t count : {20U, 499U, 500U, 501U, 1200U}) {
        SCOPED_TRACE(count);
        TestStore store;
        Dice dice(static_cast<unsigned>(count));
        populate(store, dice, count);
        ModelContext context(*store.container), listing(*store.container);
        const auto tasks = context.fetch<ProjectTask>();
        const auto listed = listing.fetch<ProjectTask>();
        const auto tags = listing.fetch<Tag>();
        const auto before = store.container->executedStatements();
        const TaskTotalsTable totals(listing, listed, now);
        const TagCounts counts(listing, tags);
        costs.push_back(store.container->executedStatements() - before);
        std::size_t deepest = 0;
        for (std::size_t i = 0; i < tasks.size(); ++i) {
            const ProjectTask& task = *tasks[i];
            const TaskTotals total = totals.of(*listed[i]);
            ASSERT_NEAR(total.totalTimeSpent, task.totalTimeSpent(now), 1e-6) << task.key();
            ASSERT_EQ(total.subtaskCount, static_cast<std::int64_t>(task.subtaskCount())) << task.key();
            ASSERT_EQ(total.completedSubtaskCount, static_cast<std::int64_t>(task.completedSubtaskCount()))
                << task.key();
            ASSERT_EQ(total.depth, static_cast<std::int64_t>(task.depth())) << task.key();
            deepest = std::max(deepest, task.depth());
        }
        EXPECT_GT(deepest, 5U);
        for (const Tag* tag : tags)
            EXPECT_EQ(counts.of(*tag), static_cast<std::int64_t>(tag->tasks().size()));
        const TaskTotalsTable some(listing, {listed[7], listed[11]}, now);
        EXPECT_EQ(some.of(*listed[11]).depth, totals.of(*listed[11]).depth) << "ancestors need not be listed";
    }
    EXPECT_THAT(costs, testing::Each(costs[0]));
    EXPECT_LE(costs[0], 4U);
}

TEST(TaskSearch, findsWhatALoopOverAllTasksFinds) {
    TestStore store;
    Dice dice(7);
    populate(store, dice, 300);
    const Text text("de_DE");
    ModelContext context(*store.container);
    const auto projects = context.fetch<Project>();
    const auto tags = context.fetch<Tag>();
    for (int round = 0; round < 300; ++round) {
        TaskSearch search{.includeArchived = dice.chance(50)};
        const std::array<const char*, 5> needles{"strasse", "WEG", "cafe", "É", ""};
        if (dice.chance(30))
            search.title = needles[dice.below(needles.size())];
        if (dice.chance(30))
            search.projectId = dice.chance(90) ? dice.oneOf(projects)->id() : UUID();
        if (dice.chance(30))
            search.status = static_cast<std::int64_t>(dice.below(6)) - 1;
        if (dice.chance(30))
            search.priority = static_cast<std::int64_t>(dice.below(6)) - 1;
        if (dice.chance(30))
            search.completed = dice.chance(50);
        if (dice.chance(30))
            search.tagId = dice.chance(90) ? dice.oneOf(tags)->id() : UUID();

        std::vector<ProjectTask*> expected;
        for (ProjectTask* task : context.fetch<ProjectTask>()) {
            const auto hasTag = [&] {
                const auto& own = task->tags();
                return std::any_of(own.begin(), own.end(), [&](const Tag* tag) { return tag->id() == search.tagId; });
            };
            const auto* project = task->project();
            if ((search.includeArchived || !task->isHidden()) &&
                (!search.title || text.contains(task->title(), *search.title)) &&
                (!search.projectId || (project != nullptr && project->id() == search.projectId)) &&
                (!search.status || static_cast<std::int64_t>(task->status()) == search.status) &&
                (!search.priority || static_cast<std::int64_t>(task->priority()) == search.priority) &&
                (!search.completed || task->isCompleted() == search.completed) && (!search.tagId || hasTag()))
                expected.push_back(task);
        }
        std::stable_sort(expected.begin(), expected.end(), [](const ProjectTask* a, const ProjectTask* b) {
            return a->dueDate() < b->dueDate(); // an absent date is less than any other
        });
        ASSERT_EQ(findTasks(context, search, text), expected) << "round " << round;
    }
}

TEST(TaskSearch, takesOneStatement) {
    MemoryStore store;
    ModelContext context(*store.container);
    make<ProjectTask>(context, {.title = "a"});
    context.save();
    const auto before = store.container->executedStatements();
    EXPECT_EQ(findTasks(context, {.title = "A", .completed = false}, Text("en_US")).size(), 1U);
    EXPECT_EQ(store.container->executedStatements() - before, 1U);
}

} // namespace
} // namespace quillorn
