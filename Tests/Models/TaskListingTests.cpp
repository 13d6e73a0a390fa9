#include "Models/TaskSearch.h"
#include "Models/TaskTotals.h"
#include "Platform/Text.h"
#include "Support/Dice.h"
#include "Support/StoreTest.h"

#include <gmock/gmock.h>

namespace quillorn {
namespace {

using namespace std::chrono_literals;

/// Clients, projects and tags of all kinds, and `taskCount` tasks with entries, in chains.
void populate(ModelContext& context, Dice& dice, std::size_t taskCount) {
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
}

TEST(TaskTotals, agreeWithTheTasksThemselves) {
    const Date now = testNow + 1min;
    std::vector<std::uint64_t> costs;
    for (const std::size_t count : {20U, 499U, 500U, 501U, 1200U}) {
        SCOPED_TRACE(count);
        TestStore store;
        Dice dice(static_cast<unsigned>(count));
        change(*store.container, [&](ModelContext& maker) { populate(maker, dice, count); });
        // No surface makes a circle, but a damaged store may hold one: 3 under 5, with what is between them, and 9.
        ForeignConnection(store.file())
            .execute(
                "UPDATE ProjectTask SET parentTask = CASE key WHEN 3 THEN 5 WHEN 4 THEN 3 WHEN 5 THEN 4 ELSE 9 END "
                "WHERE key IN (3, 4, 5, 9)");
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
            ASSERT_EQ(total.completedSubtaskCount, static_cast<std::int64_t>(task.completedSubtaskCount()));
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
    MemoryStore store;
    Dice dice(7);
    const Text text("de_DE");
    ModelContext context(*store.container);
    populate(context, dice, 300);
    context.save();
    const auto projects = context.fetch<Project>();
    const auto tags = context.fetch<Tag>();
    const std::array<const char*, 5> needles{"strasse", "WEG", "cafe", "É", ""};
    for (int round = 0; round < 300; ++round) {
        const auto maybe = [&](auto value) { return dice.chance(30) ? std::optional(value) : std::nullopt; };
        const auto raw = [&] { return maybe(static_cast<std::int64_t>(dice.below(6)) - 1); };
        const TaskSearch search{.includeArchived = dice.chance(50),
                                .title = maybe(std::string(needles[dice.below(needles.size())])),
                                .projectId = maybe(dice.chance(90) ? dice.oneOf(projects)->id() : UUID()),
                                .status = raw(),
                                .priority = raw(),
                                .completed = maybe(dice.chance(50)),
                                .tagId = maybe(dice.chance(90) ? dice.oneOf(tags)->id() : UUID())};
        auto expected = context.fetch<ProjectTask>();
        std::erase_if(expected, [&](ProjectTask* task) {
            const auto& own = task->tags();
            const auto isWanted = [&](const Tag* tag) { return tag->id() == search.tagId; };
            const auto* project = task->project();
            return (!search.includeArchived && task->isHidden()) ||
                   (search.title && !text.contains(task->title(), *search.title)) ||
                   (search.projectId && (project == nullptr || project->id() != search.projectId)) ||
                   (search.status && static_cast<std::int64_t>(task->status()) != search.status) ||
                   (search.priority && static_cast<std::int64_t>(task->priority()) != search.priority) ||
                   (search.completed && task->isCompleted() != search.completed) ||
                   (search.tagId && std::none_of(own.begin(), own.end(), isWanted));
        });
        std::stable_sort(expected.begin(), expected.end(), [](const ProjectTask* a, const ProjectTask* b) {
            return a->dueDate() < b->dueDate(); // an absent date is less than any other
        });
        const auto before = store.container->executedStatements();
        ASSERT_EQ(findTasks(context, search, text), expected) << "round " << round;
        EXPECT_EQ(store.container->executedStatements() - before, 1U);
    }
}

} // namespace
} // namespace quillorn
