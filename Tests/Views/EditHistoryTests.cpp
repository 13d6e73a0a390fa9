#include "Views/EditHistory.h"

#include "Models/ProjectOrder.h"
#include "Models/TaskActions.h"
#include "Support/Dice.h"
#include "Support/ViewTest.h"

#include <fmt/core.h>

namespace quillorn {
namespace {

using namespace std::chrono_literals;

struct EditHistoryTest : ViewTest {
    /// Every row and link by id, but for keys and for when a row was changed last.
    std::string everything() {
        ModelContext context(*container);
        std::string all;
        const auto add = [&](const std::string& sql) {
            for (const StatementLoan rows = context.statement(sql); rows->step();)
                all += std::string(rows->text(0)) + "\n";
        };
        for (const EntityType* type : container->schema().entities) {
            std::string columns = "hex(id)";
            for (const Column& column : type->columns)
                if (column.target != nullptr)
                    columns +=
                        fmt::format(" || '|' || coalesce((SELECT hex(t.id) FROM \"{}\" t WHERE t.key = o.\"{}\"), '')",
                                    column.target().name, column.name);
                else if (column.name != "updatedAt")
                    columns += fmt::format(" || '|' || quote(\"{}\")", column.name);
            add(fmt::format("SELECT {} FROM \"{}\" o ORDER BY id", columns, type->name));
        }
        add("SELECT hex(t.id) || hex(g.id) FROM ProjectTask_Tag JOIN ProjectTask t ON t.key = task JOIN Tag g ON "
            "g.key = tag ORDER BY 1");
        return all;
    }

    void populate() {
        ModelContext context(*container);
        std::vector<Project*> projects{nullptr};
        for (int i = 0; i < 5; ++i) {
            projects.push_back(&make<Project>(context, {.name = fmt::format("p{}", i)}));
            const auto& group = make<ProjectDivider>(context, {.title = fmt::format("g{}", i)});
            projects.back()->setGroupID(dice.chance(60) ? std::optional(group.id()) : std::nullopt);
            make<Tag>(context, {.name = fmt::format("t{}", i)});
        }
        for (int i = 0; i < 20; ++i) {
            auto& task = make<ProjectTask>(context, {.title = fmt::format("{}", i), .project = dice.oneOf(projects)});
            auto& entry = make<TimeEntry>(context, {.task = &task, .startTime = testNow});
            entry.setEndTime(dice.chance(50) ? std::optional(testNow + 1h) : std::nullopt);
            make<Note>(context, {.title = "n", .task = &task});
        }
        context.save();
    }

    template <class Type>
    Type* any(ModelContext& context) {
        const auto all = context.fetch<Type>();
        return all.empty() ? nullptr : dice.oneOf(all);
    }

    /// Something that people do, to something.
    void edit(ModelContext& context, Date now) {
        auto& task = *any<ProjectTask>(context);
        auto& project = *any<Project>(context);
        const auto layout = scopeLayout(context.fetch<Project>(), context.fetch<ProjectDivider>(), text);
        switch (dice.below(14)) {
        case 0:
            return task.setCompleted(!task.isCompleted(), now);
        case 1:
            return task.setStatus(static_cast<TaskStatus>(dice.below(4)), now);
        case 2:
            task.setDueHasTime(dice.chance(50));
            return task.setDueDate(dice.chance(70) ? std::optional(now + dice.below(99) * 1h) : std::nullopt);
        case 3:
            task.setTitle(fmt::format("task {}", dice.below(1000)));
            return task.setTaskDescription(dice.chance(50) ? std::optional<std::string>("d") : std::nullopt);
        case 4:
            return moveTask(task, dice.chance(80) ? &project : nullptr, now);
        case 5:
            return task.setTags({any<Tag>(context), any<Tag>(context)});
        case 6:
            if (auto* parent = any<ProjectTask>(context); faultOfParent(task, *parent) == ParentFault::none)
                task.setParentTask(parent);
            return;
        case 7:
            return move(layout.loose, dice.below(4), dice.below(5));
        case 8:
            return moveProject(project, any<ProjectDivider>(context), layout);
        case 9:
            if (auto* group = any<ProjectDivider>(context); group != nullptr && dice.chance(30))
                ungroup(*group, layout, context);
            return;
        case 10: {
            auto& copy = duplicateTask(task, now);
            copy.setTags({any<Tag>(context)});
            copy.setParentTask(&task);
            return;
        }
        case 11:
            addComment(task, "text", now);
            return;
        case 12:
            any<TimeEntry>(context)->setTask(&task);
            return;
        default:
            createGroup(nullptr, layout, context, now).setTitle("new");
        }
    }

    Dice dice{4};
};

TEST_F(EditHistoryTest, everyStepBackGivesTheStoreThatWas) {
    populate();
    queue.runPosted();
    std::vector<std::string> states{everything()};
    while (states.size() < EditHistory::mostSteps) {
        clock.advance(1s);
        if (states.size() > 1 && dice.chance(15)) {
            ASSERT_TRUE(history.undo()) << history.refusal();
            ASSERT_EQ(everything(), states[states.size() - 2]);
            if (dice.chance(50)) {
                ASSERT_TRUE(history.redo()) << history.refusal();
                ASSERT_EQ(everything(), states.back());
            } else {
                states.pop_back();
            }
        }
        history.perform("Step", [&](ModelContext& context, Date now) { edit(context, now); });
        queue.runPosted();
        if (std::string now = everything(); now != states.back())
            states.push_back(std::move(now));
    }
    for (std::size_t step = states.size() - 1; step > 0; --step) {
        ASSERT_TRUE(history.undo()) << step << history.refusal();
        ASSERT_EQ(everything(), states[step - 1]) << step;
        if (dice.chance(20))
            queue.advance(1s);
    }
    for (std::size_t step = 1; step < states.size(); ++step) {
        ASSERT_TRUE(history.redo()) << step << history.refusal();
        ASSERT_EQ(everything(), states[step]) << step;
    }
    EXPECT_FALSE(history.canRedo());
}

TEST_F(EditHistoryTest, whatWasOverwrittenElsewhereIsNotTouched) {
    const auto rename = [&](const char* name, const char* title) {
        history.perform("Rename",
                        [&](ModelContext& context, Date) { named<ProjectTask>(context, name).setTitle(title); });
    };
    elsewhere([&](ModelContext& context) { make<ProjectTask>(context, {.title = "a"}); });
    rename("a", "b");
    rename("b", "c");
    EXPECT_EQ(history.undoTitle(), "Undo Rename");
    elsewhere([&](ModelContext& context) { named<ProjectTask>(context, "c").setPriority(TaskPriority::urgent); });
    EXPECT_TRUE(history.undo()) << "another field is no matter";
    elsewhere([&](ModelContext& context) { named<ProjectTask>(context, "b").setTitle("theirs"); });
    EXPECT_FALSE(history.undo());
    EXPECT_EQ(history.refusal(), "Can’t undo “Rename”: the task “theirs” was changed meanwhile.");
    EXPECT_FALSE(history.canUndo());
    EXPECT_FALSE(history.redo());
    EXPECT_EQ(record<ProjectTask>("theirs").priority(), TaskPriority::urgent);

    history.perform("Duplicate", [&](ModelContext& context, Date now) {
        duplicateTask(named<ProjectTask>(context, "theirs"), now);
    });
    elsewhere([&](ModelContext& context) {
        make<TimeEntry>(context, {.task = &named<ProjectTask>(context, "theirs (Copy)")});
    });
    EXPECT_FALSE(history.undo());
    EXPECT_EQ(history.refusal(), "Can’t undo “Duplicate”: the task “theirs (Copy)” is in use meanwhile.");

    rename("theirs", "mine");
    elsewhere([&](ModelContext& context) { context.remove(named<ProjectTask>(context, "mine")); });
    EXPECT_FALSE(history.undo());
    EXPECT_EQ(history.refusal(), "Can’t undo “Rename”: the task was deleted meanwhile.");
}

TEST_F(EditHistoryTest, aCompletionTakenBackLetsTheTimerRunAgain) {
    elsewhere([&](ModelContext& context) { make<ProjectTask>(context, {.title = "a"}); });
    timer.start(record<ProjectTask>("a"), main.context());
    main.save();
    const Observation following =
        main.observe([&](const ChangeSet& changes) { timer.storeDidChange(changes, main.context()); });
    history.perform("Complete Task",
                    [&](ModelContext& context, Date now) { named<ProjectTask>(context, "a").setCompleted(true, now); });
    queue.runPosted();
    EXPECT_FALSE(timer.isRunning());
    ASSERT_TRUE(history.undo()) << history.refusal();
    queue.runPosted();
    EXPECT_TRUE(timer.isActive(record<ProjectTask>("a")));
    EXPECT_EQ(record<ProjectTask>("a").status(), TaskStatus::inProgress);
}

TEST_F(EditHistoryTest, anEditThatThrowsLeavesNothing) {
    populate();
    queue.runPosted();
    const std::string before = everything();
    EXPECT_THROW(history.perform("Fail",
                                 [&](ModelContext& context, Date now) {
                                     for (int step = 0; step < 20; ++step)
                                         edit(context, now);
                                     throw std::runtime_error("no");
                                 }),
                 std::runtime_error);
    EXPECT_FALSE(history.canUndo());
    main.save();
    EXPECT_EQ(everything(), before);
    history.perform("Nothing", [](ModelContext&, Date) {});
    EXPECT_FALSE(history.canUndo());
}

} // namespace
} // namespace quillorn
