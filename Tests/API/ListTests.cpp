#include "API/APITest.h"

namespace quillorn {
namespace {

using ListTest = RunningAPITest;
using Names = std::vector<std::string>;

TEST_F(ListTest, clientsAndProjectsAreFilteredAndSortedByName) {
    const auto miller = addClient("miller 10"), bakery = addClient("Bäckerei");
    addClient("Miller 9");
    archive("/api/clients/" + addClient("Archived Miller"));
    addProjectOf(miller, "site 2");
    addProjectOf(miller, "Site 10");
    archive("/api/projects/" + addProjectOf(miller, "site 1"));
    addProjectOf(bakery, "Bread");
    add("projects", R"({"name": "Alone"})");
    addProject("Of archived", false, true); // makes a client of that name, too
    const Names projects{"Alone", "Bread", "site 2", "Site 10"};
    const Names all{"Alone", "Bread", "Of archived", "site 1", "site 2", "Site 10"};
    const Names clients{"Bäckerei", "Miller 9", "miller 10"};
    const Names allClients{"Archived Miller", "Bäckerei", "Miller 9", "miller 10", "Of archived"};
    expectLists("/api/clients", "name",
                {{{"", "?archived=no"}, clients},
                 {{"?archived=true"}, allClients},
                 {{"?name=MILLER"}, {"Miller 9", "miller 10"}},
                 {{"?name=miller&archived=1"}, {"Archived Miller", "Miller 9", "miller 10"}},
                 {{"?name=b\xE4"}, {"Bäckerei"}}, // the head of a request is Latin-1
                 {{"?name=ba", "?name="}, {}},
                 {{"/" + bakery + "/projects"}, {"Bread"}},
                 {{"/" + miller + "/projects"}, {"site 2", "Site 10"}},
                 {{"/" + miller + "/projects?archived=TRUE"}, {"site 2", "Site 10", "site 1"}}});
    expectLists("/api/projects", "name",
                {{{"", "?clientId=garbage"}, projects},
                 {{"?archived=yes"}, all},
                 {{"?name=SITE", "?clientId=" + miller}, {"site 2", "Site 10"}},
                 {{"?clientId=" + miller + "&archived=1&name=1"}, {"site 1", "Site 10"}},
                 {{"?clientId=" + unknownId}, {}}});
    // The list of an archived client shows its projects all the same.
    archive("/api/clients/" + bakery);
    expectLists("/api", "name",
                {{{"/clients/" + bakery + "/projects"}, {"Bread"}}, {{"/projects"}, {"Alone", "site 2", "Site 10"}}});
}

TEST_F(ListTest, tasksAreFilteredAndSortedByDueDate) {
    const auto active = addProject("Active"), archived = addProject("Archived", true),
               ofArchived = addProject("Of an archived client", false, true), tag = addTag("blue");
    const auto addTitled = [&](const std::string& title, const std::string& more) {
        addTask(object(R"("title": "{}", {})", title, more));
    };
    const auto due = [](const char* day, const std::string& project) {
        return fmt::format(R"("dueDate": "2026-{}T00:00:00Z", "projectId": "{}")", day, project);
    };
    addTitled("Write café MENU", R"("dueDate": "2026-03-01T00:00:00Z", "priority": 3, "tagIds": [")" + tag + "\"]");
    addTitled("write letter", due("02-01", active));
    addTitled("Undated", R"("status": 1)");
    addTitled("Done", R"("status": 3, "dueDate": "2026-02-01T00:00:00Z")");
    addTitled("In archive", due("01-01", archived));
    addTitled("At client", due("01-02", ofArchived));
    const Names visible{"Undated", "write letter", "Done", "Write café MENU"};
    const Names open{"Undated", "write letter", "Write café MENU"};
    const Names all{"Undated", "In archive", "At client", "write letter", "Done", "Write café MENU"};
    expectLists("/api/tasks", "title",
                {{{"", "?archived=false", "?archived=", "?Archived=true", "?archived=no&archived=true",
                   "?status=", "?status=one", "?status=1x", "?status=+-1", "?status=99999999999999999999",
                   "?projectId=garbage", "?tagId=garbage"},
                  visible},
                 {{"?archived=true", "?archived=YES", "?archived=1"}, all},
                 {{"?title=WRITE"}, {"write letter", "Write café MENU"}},
                 {{"?title=CAF\xC9", "?priority=3", "?tagId=" + tag}, {"Write café MENU"}},
                 {{"?title=cafe", "?title=", "?title=write%20letter", "?status=9", "?status=-1",
                   "?projectId=" + archived, "?projectId=" + unknownId, "?tagId=" + tag + "&completed=true"},
                  {}},
                 {{"?completed=true"}, {"Done"}},
                 {{"?completed=false", "?completed=maybe"}, open},
                 {{"?status=1", "?status=+1"}, {"Undated"}},
                 {{"?priority=1&title=e&completed=no"}, {"Undated", "write letter"}},
                 {{"?projectId=" + active}, {"write letter"}},
                 {{"?archived=true&projectId=" + archived}, {"In archive"}}});
}

TEST_F(ListTest, entriesAreFilteredAndComeLatestFirst) {
    const auto active = addProject("Active"), archived = addProject("A", true),
               ofArchived = addProject("C", false, true);
    const auto addEntry = [&](const char* name, int minute, const std::string& more) {
        add("time-entries", object(R"("notes": "{}", "startTime": "2026-01-15T10:{:02}:00Z"{})", name, minute, more));
    };
    const auto taskOf = [&](const std::string& project) {
        return addTask(object(R"("title": "T", "projectId": "{}")", project));
    };
    const auto link = [](const char* key, const std::string& id) { return fmt::format(R"(, "{}": "{}")", key, id); };
    const auto task = taskOf(active), hidden = taskOf(archived), away = taskOf(ofArchived);
    addEntry("free", 1, "");
    addEntry("task", 5, link("taskId", task) + R"(, "endTime": "2026-01-15T11:00:00Z")");
    addEntry("project", 3, link("projectId", active));
    addEntry("hidden task", 2, link("taskId", hidden));
    addEntry("away task", 6, link("taskId", away));
    addEntry("hidden", 4, link("projectId", archived));
    addEntry("away", 7, link("projectId", ofArchived));
    addEntry("both", 8, link("taskId", task) + link("projectId", archived)); // one hidden link hides it
    const Names visible{"task", "project", "free"};
    expectLists("/api/time-entries", "notes",
                {{{"", "?archived=no", "?taskId=garbage", "?projectId=garbage"}, visible},
                 {{"?archived=yes"}, {"both", "away", "away task", "task", "hidden", "project", "hidden task", "free"}},
                 {{"?taskId=" + task, "?running=no", "?running="}, {"task"}},
                 {{"?taskId=" + task + "&archived=1"}, {"both", "task"}},
                 {{"?taskId=" + hidden, "?taskId=" + unknownId}, {}},
                 {{"?projectId=" + active}, {"task", "project"}},
                 {{"?projectId=" + archived + "&archived=1"}, {"both", "hidden", "hidden task"}},
                 {{"?running=true"}, {"project", "free"}},
                 {{"?running=1&projectId=" + active}, {"project"}}});
}

TEST_F(ListTest, notesAreFilteredAndWhatChangedLastComesFirst) {
    const auto active = addProject("Active"), archived = addProject("A", true),
               ofArchived = addProject("C", false, true);
    const auto addNote = [&](const char* title, const char* content, const std::string& project = "") {
        clock.advance(1min);
        return add("notes", object(R"("title": "{}", "content": "{}", "projectId": {})", title, content,
                                   project.empty() ? "null" : "\"" + project + "\""));
    };
    const auto first = addNote("Call", "about bread");
    addNote("Café", "BREAD and butter", active);
    addNote("In archive", "", archived);
    addNote("At client", "", ofArchived);
    const auto pinned = addNote("Pinned call", "");
    for (const bool isPinned : {true, false, true})
        expectMembers(post("/api/notes/" + pinned + "/pin"), R"("isPinned": {}, "title": "Pinned call")", isPinned);
    const auto task = addTask(object(R"("title": "T", "projectId": "{}")", archived));
    change(*store.container, [&](ModelContext& context) { // a comment; only its task says that it is hidden
        make<Note>(context, {.title = "Comment", .task = context.find<ProjectTask>(*UUID::parse(task))})
            .setUpdatedAt(clock.now());
    });
    clock.advance(1min);
    put("/api/notes/" + first, "{}");
    const Names visible{"Call", "Pinned call", "Café"};
    expectLists("/api/notes", "title",
                {{{"", "?projectId=garbage"}, visible},
                 {{"?archived=1"}, {"Call", "Pinned call", "Comment", "At client", "In archive", "Café"}},
                 {{"?title=CALL", "?search=call"}, {"Call", "Pinned call"}},
                 {{"?title=bread", "?title=", "?search=", "?projectId=" + archived}, {}},
                 {{"?search=bread", "?pinned=no&search=b"}, {"Call", "Café"}},
                 {{"?search=caf\xE9&title=CAF\xC9", "?projectId=" + active}, {"Café"}},
                 {{"?projectId=" + archived + "&archived=true"}, {"In archive"}},
                 {{"?pinned=yes"}, {"Pinned call"}}});
}

TEST_F(ListTest, tagsAreSortedByNameAndListTheirTasks) {
    const auto tag = addTag("b");
    add("tags", R"({"name": "b", "color": "#ff3b30"})"); // names may repeat
    addTag("A");
    const auto archived = addProject("Archived", true);
    for (const std::string& members : {std::string(R"("title": "one")"), std::string(R"("title": "two", "status": 3)"),
                                       fmt::format(R"("title": "three", "projectId": "{}")", archived)})
        addTask(object(R"({}, "tagIds": ["{}"])", members, tag));
    EXPECT_THAT(get("/api/tags").all("name"), ElementsAre("A", "b", "b"));
    EXPECT_EQ(get("/api/tags/" + tag)["taskCount"], 3);
    EXPECT_THAT(get("/api/tags/" + tag + "/tasks").all("title"), ElementsAre("one", "two", "three"));
}

TEST_F(ListTest, aProjectsAndATasksPartsAreListed) {
    const auto project = add("projects", R"({"name": "P"})"), other = addProject("Other");
    const auto task = addTask(object(R"("title": "T", "projectId": "{}")", project));
    addTask(object(R"("title": "Done", "status": 3, "projectId": "{}")", project));
    const auto elsewhere = addTask(object(R"("title": "Elsewhere", "projectId": "{}")", other));
    makeSubtask(elsewhere, task);
    const std::string tasks = "/api/tasks/" + task, path = "/api/projects/" + project;
    EXPECT_EQ(get(tasks + "/time-entries").body, "[]");
    const std::string both = fmt::format(R"("taskId": "{}", "projectId": "{}")", task, project);
    const std::pair<const char*, std::string> entries[] = {
        {"10:00:00Z\", \"endTime\": \"2026-01-15T11:00:00Z", fmt::format(R"("taskId": "{}")", task)},
        {"11:30:00Z", fmt::format(R"("projectId": "{}")", project)},
        {"11:45:00Z", both}, // the same entry by both ways, and the latest of all
        {"11:15:00Z\", \"endTime\": \"2026-01-15T11:35:00Z", fmt::format(R"("taskId": "{}")", task)},
        {"11:50:00Z", fmt::format(R"("taskId": "{}", "projectId": "{}")", elsewhere, other)}};
    for (const auto& [start, links] : entries)
        add("time-entries", object(R"("startTime": "2026-01-15T{}", {})", start, links));
    add("notes", object(R"("title": "N", "projectId": "{}")", project));
    add("notes", R"({"title": "Elsewhere"})");
    expectLists(path, "title",
                {{{"/tasks"}, {"T", "Done"}},
                 {{"/tasks?completed=yes", "/tasks?completed=1"}, {"Done"}},
                 {{"/tasks?completed=no", "/tasks?completed="}, {"T"}},
                 {{"/notes"}, {"N"}}});
    const Answer ofProject = get(path + "/time-entries"), ofTask = get(tasks + "/time-entries");
    EXPECT_THAT(ofProject.all("displayName"), ElementsAre("T", "P (General)", "T", "T"));
    EXPECT_THAT(ofProject.all("duration"), ElementsAre(900.0, 1800.0, 1200.0, 3600.0));
    EXPECT_THAT(ofTask.all("duration"), ElementsAre(900.0, 1200.0, 3600.0));
    EXPECT_THAT(ofTask.all("isRunning"), ElementsAre(true, false, false));
    EXPECT_THAT(ofTask.all("taskId"), ElementsAre(task, task, task));
    EXPECT_THAT(ofTask.all("displayName"), ElementsAre("T", "T", "T"));
    EXPECT_EQ(ofTask.json().asArray()->back().find("projectId"), nullptr);
}

} // namespace
} // namespace quillorn
