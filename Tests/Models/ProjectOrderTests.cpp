#include "Models/ProjectOrder.h"

#include "Models/CollapsedGroups.h"
#include "Platform/Text.h"
#include "Support/StoreTest.h"

#include <gmock/gmock.h>

namespace quillorn {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// A scope with the loose projects "a" and "b", the group "G" of "m", "n" and "o", and the empty group "H".
struct ProjectOrderTest : StoreTest<MemoryStore> {
    ProjectOrderTest() {
        project("b", 3);
        project("a", 0);
        for (std::int64_t order = 0; order < 3; ++order)
            project(std::string(1, "mno"[order]), order).setGroupID(G->id());
        context.save();
    }

    Project& project(const std::string& name, std::int64_t order) {
        auto& made = make<Project>(context, {.name = name});
        made.setSortOrder(order);
        return made;
    }
    ProjectDivider& group(const std::string& title, std::int64_t order) {
        return make<ProjectDivider>(context, {.title = title, .sortOrder = order});
    }
    ScopeLayout layout() { return scopeLayout(context.fetch<Project>(), context.fetch<ProjectDivider>(), text); }
    Project& find(const std::string& name) { return named<Project>(context, name); }
    std::vector<ProjectDivider*> groups() {
        std::vector<ProjectDivider*> list;
        for (const auto& entry : layout().groups)
            list.push_back(entry.group);
        return list;
    }
    std::vector<std::string> membersOf(const ProjectDivider& group) {
        for (const auto& entry : layout().groups)
            if (entry.group == &group)
                return namesOf(entry.members);
        return {"no such group"};
    }

    Text text{"en_US"};
    ProjectDivider *G = &group("G", 1), *H = &group("H", 2);
};

TEST_F(ProjectOrderTest, aScopeShowsGroupsAndLooseProjectsInOrder) {
    EXPECT_THAT(namesOf(layout().loose), ElementsAre("a", "b"));
    EXPECT_THAT(groups(), ElementsAre(G, H));
    EXPECT_THAT(membersOf(*G), ElementsAre("m", "n", "o"));
    EXPECT_THAT(membersOf(*H), IsEmpty());
    EXPECT_EQ(nextOrder(layout()), 4);

    // A group that is gone leaves its projects loose; equal numbers fall back to names, regardless of case, then to
    // ids.
    find("m").setGroupID(UUID::random(random));
    find("m").setSortOrder(3);
    project("B", 3);
    project("A", 3);
    context.save();
    const auto loose = layout().loose;
    const auto names = namesOf(loose);
    EXPECT_EQ(names[0] + names[1] + names[4], "aAm");
    EXPECT_LT(loose[2]->id(), loose[3]->id());
    project("Site 10", 8);
    project("site 9", 8);
    context.save();
    EXPECT_EQ(namesOf(layout().loose)[5], "Site 10") << "digits are compared as letters are";
}

TEST_F(ProjectOrderTest, aNewProjectGoesToTheEndOfItsScope) {
    auto& client = make<Client>(context);
    context.save();
    EXPECT_EQ(nextProjectOrder(&client, context), 0);
    project("archived", 90).setArchived(true);
    project("theirs", 7).setClient(&client);
    make<ProjectDivider>(context, {.clientID = client.id(), .sortOrder = 11});
    find("n").setSortOrder(50); // a member of a group does not count
    context.save();
    EXPECT_EQ(nextProjectOrder(&client, context), 12);
    EXPECT_EQ(nextProjectOrder(nullptr, context), 4);
}

TEST_F(ProjectOrderTest, aGroupTakesThePlaceOfAnother) {
    auto& I = group("I", 3);
    context.save();
    moveGroup(*G, I, groups());
    EXPECT_THAT(groups(), ElementsAre(H, &I, G));
    moveGroup(*G, *H, groups());
    EXPECT_THAT(groups(), ElementsAre(G, H, &I));
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
    EXPECT_EQ(find("m").sortOrder(), 8);
    EXPECT_EQ(find("m").groupID(), std::nullopt);
    EXPECT_EQ(find("o").sortOrder(), 10);
    EXPECT_THAT(groups(), ElementsAre(H));

    auto& fresh = createGroup(nullptr, layout(), context, testNow);
    EXPECT_EQ(fresh.title(), "");
    EXPECT_EQ(fresh.sortOrder(), 11);
    EXPECT_FALSE(fresh.clientID());
}

TEST(CollapsedGroups, keepsIdsAndDropsJunk) {
    const UUID one = UUID::parse("00000000-0000-0000-0000-000000000001").value();
    const UUID two = UUID::parse("00000000-0000-0000-0000-000000000002").value();
    CollapsedGroups groups("junk,," + one.string() + ",x");
    EXPECT_TRUE(groups.contains(one) && !groups.contains(two));
    groups.toggle(two);
    EXPECT_EQ(groups.text(), one.string() + "," + two.string());
    groups.toggle(one);
    EXPECT_EQ(CollapsedGroups(groups.text()).text(), two.string());
    groups.toggle(two);
    EXPECT_EQ(groups.text(), "");
}

} // namespace
} // namespace quillorn
