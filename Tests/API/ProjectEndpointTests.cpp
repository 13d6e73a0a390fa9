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

TEST_F(ProjectEndpointTest, totalsAreThoseOfTheWork) {
    const auto client = addClient("C"), project = addProjectOf(client, "P"), other = addProjectOf(client, "Other");
    const auto task = addTask(object(R"("title": "T", "projectId": "{}")", project));
    addTask(object(R"("title": "Done", "status": 3, "projectId": "{}")", project));
    addTask(object(R"("title": "Elsewhere", "projectId": "{}")", other));
    const auto links = fmt::format(R"("taskId": "{}", "projectId": "{}")", task, project);
    const std::tuple<const char*, const char*, std::string> entries[] = {
        {"10:00", R"("2026-01-15T11:00:00Z")", fmt::format(R"("taskId": "{}")", task)},
        {"11:00", R"("2026-01-15T12:00:00Z")", links}, // both ways, and counted once
        {"11:30", "null", fmt::format(R"("projectId": "{}")", project)}};
    for (const auto& [start, end, link] : entries)
        add("time-entries", object(R"("startTime": "2026-01-15T{}:00Z", "endTime": {}, {})", start, end, link));
    archive("/api/projects/" + other);
    expectMembers(get("/api/projects/" + project),
                  R"("taskCount": 2, "completedTaskCount": 1, "totalTimeSpent": 9000.0)");
    clock.advance(10min);
    expectMembers(get("/api/clients/" + client), R"("projectCount": 2, "activeProjectCount": 1, "totalTaskCount": 3,
        "activeTaskCount": 2, "totalTimeSpent": 9600.0)");
}

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
