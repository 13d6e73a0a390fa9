#include "Models/ProjectOrder.h"

#include "Models/CollapsedGroups.h"
#include "Platform/Text.h"
#include "Store/ModelContext.h"
#include "Support/TestRecords.h"
#include "Support/TestStore.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace quillorn {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// A scope in which names say where things are meant to be: loose "a", "b"; group "G" with "m", "n", "o"; group "H".
class ProjectOrderTest : public testing::Test {
  protected:
    ProjectOrderTest() {
        G = &group("G", 1);
        H = &group("H", 2);
        project("b", 3);
        project("a", 0);
        for (const char* name : {"m", "n", "o"})
            project(name, static_cast<std::int64_t>(members++), G);
        context.save();
    }

    Project& project(const std::string& name, std::int64_t order, const ProjectDivider* group = nullptr) {
        auto& made = make<Project>(context, {.name = name});
        made.setSortOrder(order);
        if (group != nullptr)
            made.setGroupID(group->id());
        return made;
    }
    ProjectDivider& group(const std::string& title, std::int64_t order) {
        return make<ProjectDivider>(context, {.title = title, .sortOrder = order});
    }
    ScopeLayout layout() { return scopeLayout(context.fetch<Project>(), context.fetch<ProjectDivider>(), text); }
    Project& find(const std::string& name) { return named<Project>(context, name); }
    std::vector<std::string> groupNames() {
        std::vector<std::string> names;
        for (const auto& entry : layout().groups)
            names.push_back(entry.group->title());
        return names;
    }
    std::vector<std::string> membersOf(const ProjectDivider& group) {
        for (const auto& entry : layout().groups)
            if (entry.group == &group)
                return namesOf(entry.members);
        return {"no such group"};
    }

    MemoryStore store;
    ModelContext context{*store.container};
    Text text{"en_US"};
    ProjectDivider* G;
    ProjectDivider* H;
    int members = 0;
};

TEST_F(ProjectOrderTest, aScopeShowsGroupsAndLooseProjectsInOrder) {
    EXPECT_THAT(namesOf(layout().loose), ElementsAre("a", "b"));
    EXPECT_THAT(groupNames(), ElementsAre("G", "H"));
    EXPECT_THAT(membersOf(*G), ElementsAre("m", "n", "o"));
    EXPECT_THAT(membersOf(*H), IsEmpty());
    EXPECT_EQ(nextOrder(layout()), 4);

    // A group that is gone leaves its projects loose; equal numbers fall back to names, regardless of case, then to
    // ids.
    find("m").setGroupID(UUID::random(store.random));
    find("m").setSortOrder(3);
    project("B", 3);
    project("A", 3);
    context.save();
    const auto loose = namesOf(layout().loose);
    EXPECT_EQ(loose.size(), 5U);
    EXPECT_EQ(loose[1], "A");
    EXPECT_EQ(loose[4], "m");
    const auto& tied = layout().loose;
    EXPECT_LT(tied[2]->id(), tied[3]->id());
}

TEST_F(ProjectOrderTest, aNewProjectGoesToTheEndOfItsScope) {
    auto& client = make<Client>(context, {.name = "Acme"});
    context.save();
    EXPECT_EQ(nextProjectOrder(&client, context), 0);
    EXPECT_EQ(nextProjectOrder(nullptr, context), 4);
    auto& archived = project("archived", 90);
    archived.setArchived(true);
    auto& first = project("first", 7);
    first.setClient(&client);
    make<ProjectDivider>(context, {.title = "Theirs", .clientID = client.id(), .sortOrder = 11});
    // A member of a group does not count, however high its number.
    find("n").setSortOrder(50);
    context.save();
    EXPECT_EQ(nextProjectOrder(&client, context), 12);
    EXPECT_EQ(nextProjectOrder(nullptr, context), 4);
}

TEST_F(ProjectOrderTest, movingRenumbersOnlyWhatChanges) {
    struct Case {
        std::size_t index, offset;
        std::vector<std::string> order;
    };
    const Case cases[] = {
        {1, 0, {"n", "m", "o"}}, // up
        {0, 2, {"n", "m", "o"}}, // down
        {0, 3, {"n", "o", "m"}}, {2, 0, {"o", "m", "n"}}, {1, 1, {"m", "n", "o"}},
        {3, 0, {"m", "n", "o"}}, {0, 4, {"m", "n", "o"}},
    };
    for (const Case& each : cases) {
        renumber(std::vector<Project*>{&find("m"), &find("n"), &find("o")});
        move(layout().groups[0].members, each.index, each.offset);
        EXPECT_EQ(membersOf(*G), each.order) << each.index << " to " << each.offset;
    }
    renumber(std::vector<Project*>{&find("m"), &find("n"), &find("o")});
    context.save();
    move(layout().groups[0].members, 1, 1);
    EXPECT_FALSE(context.hasChanges());
}

TEST_F(ProjectOrderTest, aGroupTakesThePlaceOfAnother) {
    auto& I = group("I", 3);
    context.save();
    const auto groups = [&] {
        std::vector<ProjectDivider*> list;
        for (const auto& entry : layout().groups)
            list.push_back(entry.group);
        return list;
    };
    moveGroup(*G, I, groups());
    EXPECT_THAT(groupNames(), ElementsAre("H", "I", "G"));
    moveGroup(*G, *H, groups());
    EXPECT_THAT(groupNames(), ElementsAre("G", "H", "I"));
    context.save();
    moveGroup(*G, *G, groups());
    moveGroup(*G, I, {G, H});
    EXPECT_FALSE(context.hasChanges());
}

TEST_F(ProjectOrderTest, aProjectMovesToTheEndOfItsDestination) {
    moveProject(find("a"), G, layout());
    EXPECT_THAT(membersOf(*G), ElementsAre("m", "n", "o", "a"));
    moveProject(find("m"), H, layout());
    EXPECT_THAT(membersOf(*H), ElementsAre("m"));
    EXPECT_EQ(find("m").sortOrder(), 0);
    moveProject(find("n"), nullptr, layout());
    EXPECT_THAT(namesOf(layout().loose), ElementsAre("b", "n"));
    EXPECT_EQ(find("n").sortOrder(), 4);
    context.save();
    moveProject(find("n"), nullptr, layout());
    moveProject(find("a"), G, layout());
    EXPECT_FALSE(context.hasChanges());
}

TEST_F(ProjectOrderTest, ungroupingPutsTheMembersLast) {
    find("b").setSortOrder(7);
    context.save();
    ungroup(*G, layout(), context);
    context.save();
    EXPECT_THAT(namesOf(layout().loose), ElementsAre("a", "b", "m", "n", "o"));
    EXPECT_THAT((std::vector{find("m").sortOrder(), find("n").sortOrder(), find("o").sortOrder()}),
                ElementsAre(8, 9, 10));
    EXPECT_THAT(groupNames(), ElementsAre("H"));

    auto& fresh = createGroup(nullptr, layout(), context, testNow);
    EXPECT_EQ(fresh.title(), "");
    EXPECT_EQ(fresh.sortOrder(), 11);
    EXPECT_FALSE(fresh.clientID());
}

TEST(CollapsedGroups, keepsIdsAndDropsJunk) {
    const UUID one = UUID::parse("00000000-0000-0000-0000-000000000001").value();
    const UUID two = UUID::parse("00000000-0000-0000-0000-000000000002").value();
    CollapsedGroups groups("junk,," + one.string() + ",x");
    EXPECT_TRUE(groups.contains(one));
    EXPECT_FALSE(groups.contains(two));
    EXPECT_EQ(groups.text(), one.string());
    groups.toggle(two);
    EXPECT_EQ(groups.text(), one.string() + "," + two.string());
    groups.toggle(one);
    EXPECT_EQ(CollapsedGroups(groups.text()).text(), two.string());
    groups.toggle(two);
    EXPECT_EQ(groups.text(), "");
}

} // namespace
} // namespace quillorn
