#include "Store/ObservedQuery.h"

#include "Support/Dice.h"
#include "Support/FakeClock.h"
#include "Support/ManualQueue.h"
#include "Support/TestRecords.h"
#include "Support/TestStore.h"

#include <gtest/gtest.h>

namespace quillorn {
namespace {

using namespace std::chrono_literals;

bool byPriority(const ProjectTask& a, const ProjectTask& b) {
    return a.priority() > b.priority();
}

/// Tasks that a list of open work would show, with the number of subtasks that are done.
ObservedCondition openWork() {
    return {
        .where = "completedAt IS NULL AND (project IS NULL OR project NOT IN (SELECT key FROM Project WHERE isArchived "
                 "= ?))",
        .values = {std::int64_t{1}},
        .dependencies = {{&Project::entityType(), "project IN changed"},
                         {&ProjectTask::entityType(),
                          "key IN (SELECT parentTask FROM ProjectTask WHERE key IN changed)"}},
    };
}

std::string line(const ProjectTask& task) {
    const auto done = std::ranges::count_if(task.subtasks(), &ProjectTask::isCompleted);
    return task.title() + "/" + (task.project() != nullptr ? task.project()->name() : "-") + "/" +
           std::to_string(done) + "/" + std::to_string(task.subtasks().size());
}

struct ObservedQueryTest : testing::Test, TestStore {
    /// As a screen keeps its rows: by the steps alone.
    void apply(const RowSteps& told) {
        if (told.isReplaced) {
            rows.clear();
            for (std::size_t place = 0; place < query.size(); ++place)
                rows.push_back(line(query[place]));
        }
        const auto at = [&](std::size_t place) { return rows.begin() + static_cast<std::ptrdiff_t>(place); };
        for (const RowStep& step : told.steps) {
            if (step.kind == RowStep::Kind::removed || step.kind == RowStep::Kind::moved)
                rows.erase(at(step.kind == RowStep::Kind::moved ? step.from : step.place));
            if (step.kind == RowStep::Kind::inserted || step.kind == RowStep::Kind::moved)
                rows.insert(at(step.place), "");
            if (step.kind != RowStep::Kind::removed)
                rows[step.place] = line(*main.context().find<ProjectTask>(step.key));
        }
    }
    std::vector<std::string> anew() {
        ModelContext context(*container);
        auto tasks = context.fetch<ProjectTask>({.where = openWork().where, .values = openWork().values});
        std::ranges::stable_sort(tasks, [](auto* a, auto* b) { return byPriority(*a, *b); });
        std::vector<std::string> lines;
        for (const ProjectTask* task : tasks)
            lines.push_back(line(*task));
        return lines;
    }

    FakeClock clock;
    ManualQueue queue{clock};
    MainContext main{*container, queue, log};
    ObservedQuery<ProjectTask> query{main, openWork(), byPriority};
    ObservedCount count{main, ProjectTask::entityType(), openWork()};
    std::vector<std::string> rows;
    std::size_t counted = 0;
    Observation token = query.observe([this](const RowSteps& told) { apply(told); });
    Observation countToken = count.observe([this](std::size_t value) { counted = value; });
};

TEST_F(ObservedQueryTest, tellsTheStepsToWhatAFetchWouldGive) {
    Dice dice(7);
    const auto one = [&]<class Type>(ModelContext& context, Type*) -> Type* {
        const auto all = context.fetch<Type>();
        return all.empty() ? nullptr : all[dice.below(all.size())];
    };
    const auto step = [&](ModelContext& context) {
        ProjectTask* task = one(context, static_cast<ProjectTask*>(nullptr));
        Project* project = one(context, static_cast<Project*>(nullptr));
        switch (dice.below(task == nullptr || project == nullptr ? 2 : 10)) {
        case 0:
            make<Project>(context, {.name = std::to_string(dice.below(1000))});
            break;
        case 1:
        case 2:
            make<ProjectTask>(context, {.title = std::to_string(dice.below(1000)), .project = project});
            break;
        case 3:
            task->setPriority(static_cast<TaskPriority>(dice.below(4)));
            break;
        case 4:
            task->setCompleted(dice.chance(50), testNow);
            break;
        case 5:
            task->setProject(project);
            break;
        case 6:
            if (ProjectTask* parent = one(context, task); parent != task)
                task->setParentTask(parent);
            break;
        case 7:
            dice.chance(80) ? context.remove(*task) : context.remove(*project);
            break;
        case 8:
            project->setArchived(dice.chance(40));
            break;
        default:
            project->setName(std::to_string(dice.below(1000)));
        }
    };
    for (int round = 0; round < 60; ++round) {
        SCOPED_TRACE(round);
        const auto steps = [&](ModelContext& context) {
            for (std::size_t left = dice.chance(5) ? 40 : 1 + dice.below(3); left > 0; --left) {
                step(context);
                context.save();
            }
        };
        if (dice.chance(30))
            steps(main.context());
        else
            change(*container, steps);
        if (dice.chance(20) && query.size() > 0) // not saved before the others' changes come
            if (ProjectTask& row = query[dice.below(query.size())]; !row.isDeleted())
                row.setPriority(static_cast<TaskPriority>(dice.below(4)));
        queue.runPosted();
        queue.advance(dice.chance(10) ? MainContext::restingTime : 1s);
        const auto expected = anew();
        ASSERT_EQ(rows, expected);
        ASSERT_EQ(counted, expected.size());
    }
    EXPECT_TRUE(log.lines().empty());
}

TEST_F(ObservedQueryTest, costsWhatChangesAndComesAgainWhenItFails) {
    change(*container, [](ModelContext& context) {
        for (int i = 0; i < 2000; ++i)
            make<ProjectTask>(context, {.title = "t"});
    });
    queue.runPosted();
    const auto costOfOne = [&] {
        change(*container, [](ModelContext& context) { context.find<ProjectTask>(RowKey{7})->setTitle("changed"); });
        const auto before = container->executedStatements();
        queue.runPosted();
        return container->executedStatements() - before;
    };
    EXPECT_LE(costOfOne(), 14U);
    EXPECT_EQ(rows[6], "changed/-/0/0");

    query.assign({.where = "title = 'changed'"});
    EXPECT_EQ(rows.size(), 1U);
    queue.runPosted();
    ForeignConnection(file()).execute("ALTER TABLE ProjectTask RENAME TO Gone");
    query.assign({});
    EXPECT_EQ(rows.size(), 1U) << "it shows what it had";
    ForeignConnection(file()).execute("ALTER TABLE Gone RENAME TO ProjectTask");
    queue.advance(1s);
    EXPECT_EQ(rows.size(), 2000U);
}

} // namespace
} // namespace quillorn
