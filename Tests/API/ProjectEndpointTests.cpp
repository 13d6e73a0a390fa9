#include "API/APITest.h"
#include "Support/TestRecords.h"

namespace quillorn {
namespace {

using namespace std::chrono_literals;
using ::testing::ElementsAre;
using ::testing::ElementsAreArray;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

/// Clients and projects by the API.
class ProjectEndpointTest : public APITest {
  protected:
    ProjectEndpointTest() { start(); }

    std::string addClient(const std::string& name, const std::string& more = "") const {
        return add("clients", object(R"("name": "{}"{})", name, more));
    }
    std::string addProjectOf(const std::string& client, const std::string& name) const {
        return add("projects", object(R"("name": "{}", "clientId": "{}")", name, client));
    }
    void archive(const std::string& path) const { EXPECT_EQ(put(path, R"({"isArchived": true})").status, 200); }
    template <class Type>
    static Type& stored(ModelContext& context, const std::string& id) {
        return *context.find<Type>(*UUID::parse(id));
    }
    std::int64_t orderOf(const std::string& project) {
        ModelContext context(*store.container);
        return stored<Project>(context, project).sortOrder();
    }
    /// The project's task, with an hour of time on it and a direct half hour beside it.
    std::string addWork(const std::string& project) {
        const auto task = addTask(object(R"("title": "T", "projectId": "{}")", project));
        add("time-entries", object(R"("taskId": "{}", "startTime": "2026-01-15T10:00:00Z",
            "endTime": "2026-01-15T11:00:00Z")",
                                   task));
        add("time-entries", object(R"("projectId": "{}", "startTime": "2026-01-15T11:30:00Z")", project));
        return task;
    }
};

TEST_F(ProjectEndpointTest, aNameAloneGetsTheDefaults) {
    const Answer client = post("/api/clients", R"({"name": " A "})");
    EXPECT_EQ(client.status, 201);
    const std::string id = *client["id"].asString();
    EXPECT_EQ(client.json(), Json(Json::Object{{"id", id},
                                               {"name", " A "},
                                               {"color", "#007AFF"},
                                               {"icon", "building.2.fill"},
                                               {"createdAt", "2026-01-15T12:00:00Z"},
                                               {"updatedAt", "2026-01-15T12:00:00Z"},
                                               {"isArchived", false},
                                               {"projectCount", 0},
                                               {"activeProjectCount", 0},
                                               {"totalTaskCount", 0},
                                               {"activeTaskCount", 0},
                                               {"totalTimeSpent", 0.0}}));
    EXPECT_EQ(get("/api/clients/" + id).body, client.body);
    const Answer project = post("/api/projects", R"({"name": "B"})");
    EXPECT_EQ(project.status, 201);
    EXPECT_EQ(project.json(), Json(Json::Object{{"id", project["id"]},
                                                {"name", "B"},
                                                {"color", "#007AFF"},
                                                {"createdAt", "2026-01-15T12:00:00Z"},
                                                {"updatedAt", "2026-01-15T12:00:00Z"},
                                                {"isArchived", false},
                                                {"taskCount", 0},
                                                {"completedTaskCount", 0},
                                                {"totalTimeSpent", 0.0}}));
    EXPECT_EQ(get("/api/projects/" + *project["id"].asString()).body, project.body);
}

TEST_F(ProjectEndpointTest, anUpdateChangesWhatItNamesAndTheDate) {
    const auto client = addClient("C");
    struct Case {
        std::string path, body;
        Json::Object changes;
    };
    const auto clientPath = "/api/clients/" + client;
    const auto projectPath = "/api/projects/" + add("projects", R"({"name": "P", "description": "D", "color": "#1"})");
    const Case cases[] = {
        {clientPath, "{}", {}},
        {clientPath,
         R"({"name": null, "description": null, "color": null, "icon": null, "isArchived": null, "projectCount": 7})",
         {}},
        {clientPath, R"({"name": "N", "color": "#"})", {{"name", "N"}, {"color", "#"}}},
        {clientPath, R"({"description": "", "icon": ""})", {{"description", ""}, {"icon", ""}}},
        {clientPath, R"({"isArchived": true})", {{"isArchived", true}}},
        {projectPath, "{}", {}},
        {projectPath, R"({"name": null, "description": null, "color": null, "clientId": null, "sortOrder": 9})", {}},
        {projectPath,
         R"({"name": "N", "description": "", "color": "#2"})",
         {{"name", "N"}, {"description", ""}, {"color", "#2"}}},
        {projectPath,
         object(R"("clientId": "{}", "isArchived": true)", client),
         {{"clientId", client}, {"isArchived", true}}},
        {projectPath, R"({"isArchived": false})", {{"isArchived", false}}},
    };
    for (const Case& each : cases) {
        clock.advance(1min);
        Json::Object expected = *get(each.path).json().asObject();
        expected["updatedAt"] = formatISO8601(clock.now());
        for (const auto& [key, value] : each.changes)
            expected[key] = value;
        const Answer answer = put(each.path, each.body);
        EXPECT_EQ(answer.status, 200);
        EXPECT_EQ(answer.json(), Json(expected)) << each.body;
        EXPECT_EQ(get(each.path).body, answer.body);
    }
}

TEST_F(ProjectEndpointTest, totalsAreThoseOfTheWork) {
    const auto client = addClient("C");
    const auto project = addProjectOf(client, "P"), other = addProjectOf(client, "Other");
    const auto task = addWork(project);
    addTask(object(R"("title": "Done", "status": 3, "projectId": "{}")", project));
    addTask(object(R"("title": "Elsewhere", "projectId": "{}")", other));
    // Linked both ways, and counted once; 60 minutes more.
    add("time-entries", object(R"("taskId": "{}", "projectId": "{}", "startTime": "2026-01-15T11:00:00Z",
        "endTime": "2026-01-15T12:00:00Z")",
                               task, project));
    archive("/api/projects/" + other);
    const Answer answer = get("/api/projects/" + project);
    EXPECT_EQ(answer["taskCount"], 2);
    EXPECT_EQ(answer["completedTaskCount"], 1);
    EXPECT_EQ(answer["totalTimeSpent"], 150 * 60.0);
    clock.advance(10min);
    const Answer owner = get("/api/clients/" + client);
    EXPECT_EQ(owner["projectCount"], 2);
    EXPECT_EQ(owner["activeProjectCount"], 1);
    EXPECT_EQ(owner["totalTaskCount"], 3);
    EXPECT_EQ(owner["activeTaskCount"], 2);
    EXPECT_EQ(owner["totalTimeSpent"], 160 * 60.0);
    // What a list says of a record is what the record says of itself.
    for (const std::string list : {"/api/clients", "/api/projects?archived=1"}) {
        const Json records = get(list).json();
        for (const Json& each : *records.asArray())
            EXPECT_EQ(each, get(list.substr(0, list.find('?')) + "/" + *each.find("id")->asString()).json());
    }
}

TEST_F(ProjectEndpointTest, listsAreFilteredAndSortedByName) {
    const auto miller = addClient("miller 10"), bakery = addClient("Bäckerei");
    addClient("Miller 9");
    archive("/api/clients/" + addClient("Archived Miller"));
    addProjectOf(miller, "site 2");
    addProjectOf(miller, "Site 10");
    archive("/api/projects/" + addProjectOf(miller, "site 1"));
    addProjectOf(bakery, "Bread");
    add("projects", R"({"name": "Alone"})");
    addProject("Of archived", false, true); // makes a client of that name, too
    using Names = std::vector<std::string>;
    const Names projects{"Alone", "Bread", "site 2", "Site 10"};
    const Names all{"Alone", "Bread", "Of archived", "site 1", "site 2", "Site 10"};
    const Names clients{"Bäckerei", "Miller 9", "miller 10"};
    const Names allClients{"Archived Miller", "Bäckerei", "Miller 9", "miller 10", "Of archived"};
    const std::pair<std::string, Names> cases[] = {
        {"/api/clients", clients},
        {"/api/clients?archived=no", clients},
        {"/api/clients?archived=true", allClients},
        {"/api/clients?name=MILLER", {"Miller 9", "miller 10"}},
        {"/api/clients?name=miller&archived=1", {"Archived Miller", "Miller 9", "miller 10"}},
        {"/api/clients?name=b\xE4", {"Bäckerei"}}, // the head of a request is Latin-1
        {"/api/clients?name=ba", {}},
        {"/api/clients?name=", {}},
        {"/api/projects", projects},
        {"/api/projects?archived=yes", all},
        {"/api/projects?name=SITE", {"site 2", "Site 10"}},
        {"/api/projects?clientId=" + miller, {"site 2", "Site 10"}},
        {"/api/projects?clientId=" + miller + "&archived=1&name=1", {"site 1", "Site 10"}},
        {"/api/projects?clientId=" + unknownId, {}},
        {"/api/projects?clientId=garbage", projects},
        {"/api/clients/" + bakery + "/projects", {"Bread"}},
        {"/api/clients/" + miller + "/projects", {"site 2", "Site 10"}},
        {"/api/clients/" + miller + "/projects?archived=TRUE", {"site 2", "Site 10", "site 1"}},
    };
    for (const auto& [path, names] : cases)
        EXPECT_THAT(get(path).all("name"), ElementsAreArray(names.begin(), names.end())) << path;
    // The list of an archived client shows its projects all the same.
    archive("/api/clients/" + bakery);
    EXPECT_THAT(get("/api/clients/" + bakery + "/projects").all("name"), ElementsAre("Bread"));
    EXPECT_THAT(get("/api/projects").all("name"), ElementsAre("Alone", "site 2", "Site 10"));
}

TEST_F(ProjectEndpointTest, aProjectsPartsAreListed) {
    const auto project = add("projects", R"({"name": "P"})");
    const auto task = addWork(project);
    addTask(object(R"("title": "Done", "status": 3, "projectId": "{}")", project));
    addWork(add("projects", R"({"name": "Other"})"));
    add("notes", object(R"("title": "N", "projectId": "{}")", project));
    add("notes", R"({"title": "Elsewhere"})");
    // The same entry by both ways, and the latest of all.
    add("time-entries",
        object(R"("taskId": "{}", "projectId": "{}", "startTime": "2026-01-15T11:45:00Z")", task, project));
    const std::string path = "/api/projects/" + project;
    const std::pair<const char*, std::vector<std::string>> tasks[] = {
        {"/tasks", {"T", "Done"}},      {"/tasks?completed=yes", {"Done"}}, {"/tasks?completed=1", {"Done"}},
        {"/tasks?completed=no", {"T"}}, {"/tasks?completed=", {"T"}},
    };
    for (const auto& [suffix, titles] : tasks)
        EXPECT_THAT(get(path + suffix).all("title"), ElementsAreArray(titles)) << suffix;
    EXPECT_THAT(get(path + "/notes").all("title"), ElementsAre("N"));
    EXPECT_THAT(get(path + "/time-entries").all("displayName"), ElementsAre("T", "P (General)", "T"));
    EXPECT_THAT(get(path + "/time-entries").all("duration"), ElementsAre(900.0, 1800.0, 3600.0));
}

TEST_F(ProjectEndpointTest, aNewProjectComesLastInTheOrderOfItsClient) {
    const auto client = addClient("C"), other = addClient("D");
    EXPECT_EQ(orderOf(addProjectOf(client, "first")), 0);
    const auto second = addProjectOf(client, "second");
    EXPECT_EQ(orderOf(second), 1);
    EXPECT_EQ(orderOf(add("projects", R"({"name": "Alone"})")), 0);
    const UUID group = inStore([&](ModelContext& context) {
        auto& divider = make<ProjectDivider>(
            context, {.title = "G", .clientID = stored<Client>(context, client).id(), .sortOrder = 6});
        stored<Project>(context, second).setGroupID(divider.id());
        return divider.id();
    });
    EXPECT_EQ(orderOf(addProjectOf(client, "third")), 7);
    // A change that names the client it has moves nothing.
    put("/api/projects/" + second, object(R"("clientId": "{}")", client));
    EXPECT_EQ(orderOf(second), 1);
    EXPECT_EQ(inStore([&](ModelContext& context) { return stored<Project>(context, second).groupID(); }), group);
    addProjectOf(other, "there before");
    EXPECT_EQ(put("/api/projects/" + second, object(R"("clientId": "{}")", other))["clientId"], other);
    EXPECT_EQ(orderOf(second), 1) << "behind the one that was there";
    EXPECT_EQ(inStore([&](ModelContext& context) { return stored<Project>(context, second).groupID(); }), std::nullopt);
    addProjectOf(client, "fourth");
    put("/api/projects/" + second, object(R"("clientId": "{}")", client));
    EXPECT_EQ(orderOf(second), 9);
}

TEST_F(ProjectEndpointTest, aMissingClientLeavesNothingBehind) {
    const auto project = add("projects", R"({"name": "P"})");
    const std::string before = get("/api/projects").body;
    clock.advance(1min);
    const std::string body = object(R"("name": "New", "clientId": "{}")", unknownId);
    for (const Answer& answer : {post("/api/projects", body), put("/api/projects/" + project, body)})
        EXPECT_EQ(code(answer), "404 not_found Client with id " + unknownId + " not found");
    EXPECT_EQ(get("/api/projects").body, before);
    EXPECT_THAT(code(put("/api/projects/" + unknownId, body)), HasSubstr("Project with id"));
}

TEST_F(ProjectEndpointTest, aDeletedClientTakesEverythingAlong) {
    const auto client = addClient("C"), kept = addClient("Kept");
    const auto project = addProjectOf(client, "P"), single = addProjectOf(kept, "Single");
    addWork(project);
    addWork(single);
    for (const auto& each : {project, single})
        add("notes", object(R"("title": "N", "projectId": "{}")", each));
    EXPECT_EQ(call("DELETE", "/api/clients/" + client).head, "HTTP/1.1 204 No Content\r\nServer: Tidewire 9.8");
    const std::string lists[] = {"/api/projects", "/api/tasks", "/api/notes"};
    for (const std::string& list : lists)
        EXPECT_EQ(get(list).all("id").size(), 1U) << list;
    EXPECT_EQ(get("/api/time-entries").all("id").size(), 2U);
    EXPECT_EQ(call("DELETE", "/api/projects/" + single).status, 204);
    for (const std::string& list : lists)
        EXPECT_EQ(get(list).body, "[]");
    EXPECT_EQ(get("/api/time-entries").body, "[]");
    EXPECT_EQ(get("/api/clients/" + kept)["projectCount"], 0);
    EXPECT_EQ(call("DELETE", "/api/clients/" + client).status, 404);
}

} // namespace
} // namespace quillorn
