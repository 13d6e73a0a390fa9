#include "Views/SidebarView.h"

#include "Support/ViewTest.h"

#include <gmock/gmock.h>

namespace quillorn {
namespace {

using testing::Contains;
using testing::ElementsAre;
using Kind = SidebarRow::Kind;
using Action = SidebarAction;

struct SidebarViewTest : ViewTest {
    /// Acme has the loose project "loose" and the group "G" of "m" and "n"; "own" has no client; "Old" is archived.
    SidebarViewTest() {
        elsewhere([&](ModelContext& context) {
            auto& acme = make<Client>(context, {.name = "Acme"});
            make<Client>(context, {.name = "Old"}).setArchived(true);
            make<Tag>(context, {.name = "home"});
            const auto& group = make<ProjectDivider>(context, {.title = "G", .clientID = acme.id(), .sortOrder = 7});
            make<ProjectDivider>(context, {.title = "H", .clientID = acme.id(), .sortOrder = 8});
            for (const char* name : {"loose", "m", "n", "own"}) {
                auto& project = make<Project>(context, {.name = name});
                project.setClient(*name == 'o' ? nullptr : &acme);
                if (*name == 'm' || *name == 'n')
                    project.setGroupID(group.id());
            }
        });
        view.toggle(row("Acme").id);
    }
    std::vector<std::string> lines() {
        std::vector<std::string> lines;
        for (const SidebarRow& each : view.rows().rows())
            lines.push_back(std::string(each.depth, '.') + each.title +
                            (each.countText.empty() ? "" : " " + each.countText));
        return lines;
    }
    std::vector<std::string> below(const char* title) {
        const auto all = lines();
        return {std::ranges::find(all, title) + 1, std::ranges::find(all, "Add Client")};
    }
    const SidebarRow& row(std::string_view title) {
        for (const SidebarRow& each : view.rows().rows())
            if (each.title == title)
                return each;
        throw std::runtime_error("no row " + std::string(title));
    }
    void act(Action action, std::string_view title) {
        view.perform(action, row(title).id);
        queue.runPosted();
    }
    std::vector<std::string> menu(std::string_view title) {
        std::vector<std::string> titles;
        for (const SidebarMenuItem& item : view.menu(row(title).id))
            titles.push_back(item.title + (item.symbol == "checkmark" ? "*" : ""));
        return titles;
    }

    SidebarView view{environment, scene, notifications};
};

TEST_F(SidebarViewTest, sectionsShowWhatIsInThem) {
    EXPECT_THAT(lines(), ElementsAre("Smart Lists", "Today", "Daily Summary", "Upcoming", "All Tasks", "Activity Log",
                                     "All Notes", "Clients", "Acme", ".loose", ".G 2", "..m", "..n", ".H 0",
                                     "Add Client", "Unassigned", "own", "Add Project", "Tags", "Archived"));
    view.toggleSection(SidebarSection::archived);
    view.toggleSection(SidebarSection::tags);
    view.toggleSection(SidebarSection::smartLists);
    EXPECT_EQ(row("Archived").help, "Collapse Archived");
    EXPECT_THAT(lines(),
                ElementsAre("Smart Lists", "Clients", "Acme", ".loose", ".G 2", "..m", "..n", ".H 0", "Add Client",
                            "Unassigned", "own", "Add Project", "Tags", "home", "Add Tag", "Archived", "Old"));
    view.toggle(row("G").id);
    act(Action::archive, "loose");
    EXPECT_THAT(below("Acme"), ElementsAre(".G 2", ".H 0"));
    EXPECT_EQ(row("G").help, "Expand group");
    EXPECT_THAT(lines(), Contains("loose"));
    SidebarView again(environment, scene, notifications);
    EXPECT_EQ(again.rows().rows(), view.rows().rows());
}

TEST_F(SidebarViewTest, todayCountsTasksAtTheTopLevel) {
    elsewhere([&](ModelContext& context) {
        auto& parent = make<ProjectTask>(context, {.title = "a", .status = TaskStatus::inProgress});
        make<ProjectTask>(context, {.title = "b", .dueDate = testNow}).setParentTask(&parent);
        make<ProjectTask>(context, {.title = "c", .dueDate = testNow + std::chrono::hours(24)});
    });
    EXPECT_EQ(row("Today").countText, "1");
    queue.advance(std::chrono::hours(13));
    EXPECT_EQ(row("Today").countText, "2");
}

TEST_F(SidebarViewTest, projectsAndGroupsAreMovedByMenuAndByDropping) {
    EXPECT_THAT(menu("n"), ElementsAre("Edit...", "Move Up", "None", "G*", "H", "Archive", "Delete..."));
    EXPECT_THAT(menu("G"), ElementsAre("Rename", "Collapse", "Move Down", "Ungroup"));
    act(Action::moveUp, "n");
    EXPECT_THAT(below("Acme"), ElementsAre(".loose", ".G 2", "..n", "..m", ".H 0"));
    act(Action::moveDown, "G");
    using Place = SidebarView::DropPlace;
    const std::tuple<const char*, const char*, Place> places[] = {
        {"own", "H", Place::none},    {"loose", "Today", Place::none}, {"G", "n", Place::none},
        {"n", "G", Place::none},      {"n", "n", Place::none},         {"n", "m", Place::below},
        {"loose", "m", Place::above}, {"n", "loose", Place::above},    {"G", "H", Place::above},
        {"loose", "H", Place::into}};
    for (const auto& [dragged, target, place] : places)
        EXPECT_EQ(view.dropPlace(row(dragged).id, row(target).id), place) << dragged << " on " << target;
    view.drop(row("own").id, row("H").id);
    view.drop(row("loose").id, row("H").id);
    queue.runPosted();
    EXPECT_THAT(below("Acme"), ElementsAre(".H 1", "..loose", ".G 2", "..n", "..m"));
    view.drop(row("G").id, row("H").id);
    view.perform(Action::moveToGroup, row("m").id, row("H").id.record);
    queue.runPosted();
    EXPECT_THAT(below("Acme"), ElementsAre(".G 1", "..n", ".H 2", "..loose", "..m"));
    view.drop(row("n").id, row("m").id);
    queue.runPosted();
    EXPECT_THAT(below("Acme"), ElementsAre(".G 0", ".H 3", "..loose", "..n", "..m"));
    EXPECT_TRUE(view.move(row("m").id, Direction::up));
    EXPECT_FALSE(view.move(row("G").id, Direction::up));
    view.drop(row("n").id, row("loose").id);
    queue.runPosted();
    EXPECT_THAT(below("Acme"), ElementsAre(".G 0", ".H 3", "..n", "..loose", "..m"));
    act(Action::ungroup, "H");
    EXPECT_THAT(below("Acme"), ElementsAre(".n", ".loose", ".m", ".G 0"));
    while (history.canUndo())
        ASSERT_TRUE(history.undo()) << history.refusal();
    queue.runPosted();
    EXPECT_THAT(below("Acme"), ElementsAre(".loose", ".G 2", "..m", "..n", ".H 0"));
}

TEST_F(SidebarViewTest, aNewGroupIsNamedAtOnce) {
    act(Action::newGroup, "Acme");
    ASSERT_TRUE(view.renamingGroup());
    EXPECT_TRUE(row("Group").isRenaming);
    view.finishRenaming("New");
    queue.runPosted();
    EXPECT_THAT(below("Acme").back(), ".New 0");
    EXPECT_EQ(view.renamingGroup(), std::nullopt);
}

TEST_F(SidebarViewTest, deletingAsksFirst) {
    const auto ask = [&](const char* title) {
        view.perform(Action::remove, row(title).id);
        return view.deletion().value().message;
    };
    view.toggleSection(SidebarSection::tags);
    elsewhere([&](ModelContext& context) { make<ProjectTask>(context).setTags({&named<Tag>(context, "home")}); });
    EXPECT_EQ(ask("home"), "“home” will be removed from 1 task. The tasks themselves are kept.");
    EXPECT_EQ(ask("own"),
              "This permanently deletes “own” — including all its tasks, notes, and time entries. This can’t "
              "be undone.");
    EXPECT_EQ(ask("Acme"), "This permanently deletes “Acme” and its 3 projects — including every task, note, and time "
                           "entry inside them. This can’t be undone.");
    view.cancelDeletion();
    view.confirmDeletion();
    EXPECT_THAT(lines(), Contains("Acme"));
    ask("Acme");
    view.confirmDeletion();
    queue.runPosted();
    EXPECT_THAT(below("Clients"), ElementsAre());
    notifications.post({.name = "newClient", .object = {}, .userInfo = {}});
    queue.runPosted();
    EXPECT_EQ(view.sheet(), SidebarSheet{SidebarSheet::Kind::client});
}

} // namespace
} // namespace quillorn
