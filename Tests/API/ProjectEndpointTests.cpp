#include "API/APITest.h"

namespace quillorn {
namespace {

struct ProjectEndpointTest : RunningAPITest {
    template <class Type>
    static Type& stored(ModelContext& context, const std::string& id) {
        return *context.find<Type>(*UUID::parse(id));
    }
    std::int64_t orderOf(const std::string& project) {
        ModelContext context(*store.container);
        return stored<Project>(context, project).sortOrder();
    }
    std::optional<UUID> groupOf(const std::string& project) {
        ModelContext context(*store.container);
        return stored<Project>(context, project).groupID();
    }
};

TEST_F(ProjectEndpointTest, aNewProjectComesLastInTheOrderOfItsClient) {
    const auto client = addClient("C"), other = addClient("D");
    const auto moveTo = [&](const std::string& owner, const std::string& project) {
        return put("/api/projects/" + project, object(R"("clientId": "{}")", owner));
    };
    EXPECT_EQ(orderOf(addProjectOf(client, "first")), 0);
    const auto second = addProjectOf(client, "second");
    EXPECT_EQ(orderOf(second), 1);
    EXPECT_EQ(orderOf(add("projects", R"({"name": "Alone"})")), 0);
    std::optional<UUID> group;
    change(*store.container, [&](ModelContext& context) {
        const UUID owner = stored<Client>(context, client).id();
        group = make<ProjectDivider>(context, {.title = "G", .clientID = owner, .sortOrder = 6}).id();
        stored<Project>(context, second).setGroupID(group);
    });
    EXPECT_EQ(orderOf(addProjectOf(client, "third")), 7);
    moveTo(client, second); // the client it has: nothing moves
    EXPECT_EQ(orderOf(second), 1);
    EXPECT_EQ(groupOf(second), group);
    addProjectOf(other, "there before");
    EXPECT_EQ(moveTo(other, second)["clientId"], other);
    EXPECT_EQ(orderOf(second), 1) << "behind the one that was there";
    EXPECT_EQ(groupOf(second), std::nullopt);
    addProjectOf(client, "fourth");
    moveTo(client, second);
    EXPECT_EQ(orderOf(second), 9);
}

} // namespace
} // namespace quillorn
