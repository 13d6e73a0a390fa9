#include "Views/TaskListView.h"

#include "Models/Project.h"
#include "Models/Tag.h"
#include "Support/Dice.h"
#include "Support/ViewTest.h"

#include <fmt/core.h>
#include <fmt/ranges.h>
#include <gmock/gmock.h>

namespace quillorn {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using enum TaskFilter::Kind;

std::string line(const TaskListRow& row) {
    constexpr const char* disclosures[] = {"", "+", "-"};
    const TaskRowWords& words = *row.words;
    std::string text = std::string(row.depth, '.') + disclosures[static_cast<int>(row.disclosure)] + words.title;
    return row.kind() == TaskListRow::Kind::section ? "[" + text + " " + words.countText + "]" : text;
}

std::vector<std::string> lines(TaskListView& view) {
    std::vector<std::string> lines;
    for (const TaskListRow& row : view.rows().rows())
        lines.push_back(line(row));
    return lines;
}

struct TaskListViewTest : ViewTest {
    /// "a" over "b" over "c", "d" alone; a and c are due today, d is done.
    void addFamily() {
        elsewhere([&](ModelContext& context) {
            auto& site = make<Project>(context, {.name = "Site"});
            ProjectTask* parent = nullptr;
            for (const char* title : {"a", "b", "c"}) {
                auto& task = make<ProjectTask>(context, {.title = title, .project = &site});
                task.setParentTask(parent);
                task.setDueDate(*title == 'b' ? std::nullopt : std::optional(testNow + 1h));
                parent = &task;
            }
            make<ProjectTask>(context, {.title = "d", .project = &site}).setCompleted(true, testNow);
        });
    }
    UUID id(const char* title) { return record<ProjectTask>(title).id(); }
};

TEST_F(TaskListViewTest, subtasksStandUnderTheirParents) {
    addFamily();
    TaskListView everything(environment, scene, {all});
    EXPECT_THAT(lines(everything), ElementsAre("+a"));
    everything.toggleDisclosure(id("a"));
    everything.toggleDisclosure(id("b"));
    EXPECT_THAT(lines(everything), ElementsAre("-a", ".-b", "..c"));
    everything.setSearchText("C");
    EXPECT_THAT(lines(everything), ElementsAre("..c")) << "a search hides nothing that it finds";

    TaskListView due(environment, scene, {today});
    EXPECT_THAT(lines(due), ElementsAre("[Today 2]", "-a", ".-b", "..c")) << "open in this list too, with its guest";
    due.toggleDisclosure(id("a"));
    EXPECT_THAT(lines(due), ElementsAre("[Today 2]", "+a", "..c")) << "what is due is never out of sight";
    everything.select({id("a")});
    everything.reopen();
    EXPECT_THAT(lines(everything), ElementsAre("+a")) << "without the search, and folded as in the other list";
    EXPECT_EQ(everything.selection(), TaskIds());
    elsewhere([&](ModelContext& context) { named<ProjectTask>(context, "b").setParentTask(nullptr); });
    EXPECT_THAT(lines(due), ElementsAre("[Today 2]", "a", ".c"));
    EXPECT_EQ(due.dashboard()->hero.text, "2 due · 0 in progress");
}

TEST_F(TaskListViewTest, doneWorkIsFoldedUnderGroupingByStatus) {
    addFamily();
    settings.set("showCompletedTasks", true);
    TaskListView view(environment, scene, {project, record<Project>("Site").id()});
    EXPECT_THAT(lines(view), ElementsAre("[To Do 3]", "+a", "+Show 1 done tasks"));
    view.toggleDoneSection();
    EXPECT_THAT(lines(view), ElementsAre("[To Do 3]", "+a", "-Hide done tasks", "d"));
    view.setShowsCompleted(false);
    view.setGroupBy(GroupBy::none);
    EXPECT_THAT(lines(view), ElementsAre("+a"));
    EXPECT_EQ(scene.text(setting("taskGroupBy")), "None");
    EXPECT_EQ(view.emptyState(), std::nullopt);
    view.setSearchText("x");
    EXPECT_EQ(view.emptyState()->text, "Nothing matches your search.");
}

TEST_F(TaskListViewTest, actionsAreForTheSelectionAndCanBeUndone) {
    addFamily();
    TaskListView view(environment, scene, {project, record<Project>("Site").id()});
    view.setGroupBy(GroupBy::none);
    view.select({id("a"), id("c")});
    EXPECT_EQ(view.targets(id("b")), TaskIds{id("b")});
    EXPECT_EQ(view.targets(id("a")).size(), 2);
    view.edits().toggleCompleted(view.targets(id("a")));
    queue.runPosted();
    EXPECT_EQ(history.undoTitle(), "Undo Complete 2 Tasks");
    EXPECT_THAT(lines(view), ElementsAre(".b"));
    EXPECT_TRUE(history.undo());
    queue.runPosted();
    EXPECT_THAT(lines(view), ElementsAre("+a"));
    EXPECT_TRUE(view.edits().menu({id("b")}).canConvertToStandalone);
    EXPECT_EQ(view.edits().menu({id("a"), id("d")}),
              (TaskMenu{.completion = "Mark Complete", .priority = TaskPriority::medium}));
    view.edits().convertToStandalone({id("b")});
    view.edits().setPriority({id("b")}, TaskPriority::urgent);
    view.edits().moveToProject({id("a")}, std::nullopt);
    view.edits().duplicate({id("c")});
    view.setSortOrder(SortOrder::priority);
    queue.runPosted();
    EXPECT_THAT(lines(view), ElementsAre("+b", "c (Copy)"));
    EXPECT_EQ(view.edits().deletion({id("b")})->message,
              "This permanently deletes “b”. Its 1 subtask will be kept as top-level tasks. This can’t be undone.");
    EXPECT_EQ(view.edits().deletion({id("b"), id("c")})->title, "Delete 2 Tasks?");
    EXPECT_EQ(view.edits().addSubtask(id("b"), " \n"), std::nullopt);
    EXPECT_EQ(main.context().find<ProjectTask>(*view.edits().addSubtask(id("b"), " e "))->project(),
              record<ProjectTask>("b").project());
    EXPECT_TRUE(history.undo());
    view.edits().remove({id("b")});
    queue.runPosted();
    EXPECT_THAT(lines(view), ElementsAre("c", "c (Copy)"));
}

TEST_F(TaskListViewTest, timeMovesTasks) {
    TaskListView soon(environment, scene, {upcoming});
    TaskListView due(environment, scene, {today});
    elsewhere([&](ModelContext& context) {
        make<ProjectTask>(context, {.title = "now", .dueDate = testNow + 5min});
        make<ProjectTask>(context, {.title = "week", .dueDate = testNow + 24h * 7 + 5min});
    });
    EXPECT_THAT(lines(soon), ElementsAre("[Today 1]", "now"));
    EXPECT_EQ(due.dashboard()->overdue, std::nullopt);
    EXPECT_EQ(soon.dashboard()->breakdowns[0].bars[0].label, "Thu");
    EXPECT_EQ(soon.dashboard()->breakdowns[0].bars[0].count, 1);
    queue.advance(6min);
    EXPECT_THAT(lines(soon), ElementsAre("[Later 1]", "week"));
    EXPECT_EQ(due.dashboard()->overdue->value, "1");
    EXPECT_TRUE(due.rows()[1].words->isOverdue);
    queue.advance(12h);
    EXPECT_THAT(lines(due), ElementsAre("[Overdue 1]", "now"));
}

/// Lists that follow changes say what lists say that are made anew.
TEST_F(TaskListViewTest, everyChangeLeavesTheListThatWouldBeMadeAnew) {
    Dice dice(7);
    elsewhere([&](ModelContext& context) {
        for (int i = 0; i < 4; ++i) {
            make<Project>(context, {.name = fmt::format("p{}", i)}).setClient(&make<Client>(context));
            make<Tag>(context, {.name = fmt::format("t{}", i)});
        }
        for (int i = 0; i < 40; ++i)
            make<ProjectTask>(context, {.title = fmt::format("{}", i)});
    });
    const auto any = [&]<class Type>(ModelContext& context, Type*) { return dice.oneOf(context.fetch<Type>()); };
    const auto edit = [&](ModelContext& context) {
        auto& task = *any(context, static_cast<ProjectTask*>(nullptr));
        switch (dice.below(10)) {
        case 0:
            return task.setCompleted(!task.isCompleted(), testNow);
        case 1:
            return task.setStatus(static_cast<TaskStatus>(dice.below(4)), testNow);
        case 2:
            return task.setDueDate(testNow + (static_cast<int>(dice.below(12)) - 3) * 24h);
        case 3:
            return task.setTitle(fmt::format("{}", dice.below(99)));
        case 4:
            return task.setProject(any(context, static_cast<Project*>(nullptr)));
        case 5:
            return task.setTags({any(context, static_cast<Tag*>(nullptr)), any(context, static_cast<Tag*>(nullptr))});
        case 6:
            if (auto* parent = any(context, &task); faultOfParent(task, *parent) == ParentFault::none)
                task.setParentTask(parent);
            return;
        case 7:
            any(context, static_cast<Project*>(nullptr))->setName(fmt::format("p{}", dice.below(99)));
            make<TimeEntry>(context, {.task = &task, .startTime = testNow}).setEndTime(testNow + 1h);
            return;
        case 8:
            make<ProjectTask>(context, {.title = "new", .project = task.project()}).setSourceTitle("m");
            return;
        default:
            if (dice.chance(50))
                context.remove(task);
            else
                any(context, static_cast<Tag*>(nullptr))->setName(fmt::format("t{}", dice.below(99)));
        }
    };
    settings.set("showCompletedTasks", true);
    const std::vector<TaskFilter> filters{{all},
                                          {today},
                                          {upcoming},
                                          {project, record<Project>("p0").id()},
                                          {client, record<Project>("p1").client()->id()},
                                          {tag, record<Tag>("t0").id()}};
    std::vector<std::unique_ptr<MemorySceneStorage>> scenes;
    std::vector<std::unique_ptr<TaskListView>> views;
    for (const TaskFilter& filter : filters)
        for (const GroupBy grouping : groupings) {
            scenes.push_back(std::make_unique<MemorySceneStorage>());
            views.push_back(std::make_unique<TaskListView>(environment, *scenes.back(), filter));
            views.back()->setGroupBy(grouping);
            views.back()->setSortOrder(sortOrders[views.size() % 4]);
        }
    for (int step = 0; step < 120; ++step) {
        elsewhere([&](ModelContext& context) {
            for (std::size_t count = dice.chance(10) ? 40 : 1; count > 0; --count) {
                edit(context);
                context.save();
            }
        });
        const auto shown = dice.below(views.size());
        const std::string search = std::string("12").substr(0, dice.below(3));
        for (std::size_t at = shown; at < views.size(); at += 5) {
            TaskListView& view = *views[at];
            if (dice.chance(30) && !view.rows().isEmpty())
                view.toggleDisclosure(view.rows()[dice.below(view.rows().size())].id.task);
            view.setSearchText(search);
            TaskListView anew(environment, *scenes[at], view.filter());
            anew.setSearchText(search);
            ASSERT_EQ(lines(view), lines(anew)) << step << " " << at;
            ASSERT_EQ(view.dashboard(), anew.dashboard()) << step << " " << at;
            ASSERT_EQ(view.meetings(), anew.meetings());
            for (std::size_t row = 0; row < view.rows().size(); ++row)
                ASSERT_EQ(*view.rows()[row].words, *anew.rows()[row].words) << step << " " << at;
        }
    }
    EXPECT_TRUE(queue.failures().empty());
}

} // namespace
} // namespace quillorn
