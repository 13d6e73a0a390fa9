#include "API/APITest.h"

namespace quillorn {
namespace {

using ListTest = RunningAPITest;

TEST_F(ListTest, parametersOfClientsProjectsAndTasks) {
    const auto client = addClient("Café"), site = addProjectOf(client, "Site"), old = addProjectOf(client, "Old");
    const auto tag = addTag("blue");
    add("projects", R"({"name": "Free"})");
    archive("/api/projects/" + old);
    archive("/api/clients/" + addClient("Away"));
    addTask(object(R"("title": "Call", "priority": 3, "projectId": "{}", "tagIds": ["{}"])", site, tag));
    addTask(R"({"title": "Done", "status": 3, "dueDate": "2026-02-01T00:00:00Z"})");
    addTask(object(R"("title": "Hidden", "dueDate": "2026-01-01T00:00:00Z", "projectId": "{}")", old));
    expectLists("/api/clients", "name",
                {{{"", "?archived=no", "?name=CAF\xC9"}, {"Café"}}, // the head of a request is Latin-1
                 {{"?archived=true", "?archived=YES", "?archived=1"}, {"Away", "Café"}},
                 {{"?name=", "?name=cafe"}, {}}});
    expectLists("/api/projects", "name",
                {{{"", "?clientId=garbage"}, {"Free", "Site"}},
                 {{"?archived=yes"}, {"Free", "Old", "Site"}},
                 {{"?clientId=" + client, "?name=SITE"}, {"Site"}},
                 {{"?clientId=" + unknownId}, {}}});
    expectLists("/api/tasks", "title",
                {{{"", "?archived=", "?Archived=true", "?archived=no&archived=true", "?status=one", "?status=1x",
                   "?status=+-1", "?status=99999999999999999999", "?projectId=garbage", "?tagId=garbage"},
                  {"Call", "Done"}},
                 {{"?archived=1"}, {"Call", "Hidden", "Done"}},
                 {{"?title=CALL", "?priority=3", "?status=+0", "?completed=no", "?projectId=" + site, "?tagId=" + tag},
                  {"Call"}},
                 {{"?status=3", "?completed=true"}, {"Done"}},
                 {{"?title=", "?title=%43all", "?status=9", "?projectId=" + old, "?tagId=" + unknownId}, {}}});
    archive("/api/clients/" + client); // whose own list shows its projects all the same
    expectLists("/api/clients/" + client + "/projects", "name",
                {{{"", "?archived=0"}, {"Site"}}, {{"?archived=TRUE"}, {"Site", "Old"}}});
}

TEST_F(ListTest, parametersOfEntriesAndNotes) {
    const auto site = addProject("Site"), old = addProject("Old", true);
    const auto task = addTask(object(R"("title": "T", "projectId": "{}")", site));
    const auto addEntry = [&](const char* name, int minute, const std::string& more) {
        add("time-entries", object(R"("notes": "{}", "startTime": "2026-01-15T10:{:02}:00Z", {})", name, minute, more));
    };
    addEntry("task", 5, fmt::format(R"("taskId": "{}", "endTime": "2026-01-15T11:00:00Z")", task));
    addEntry("project", 3, fmt::format(R"("projectId": "{}")", site));
    addEntry("hidden", 4, fmt::format(R"("projectId": "{}")", old));
    expectLists("/api/time-entries", "notes",
                {{{"", "?archived=no", "?taskId=garbage", "?projectId=" + site}, {"task", "project"}},
                 {{"?archived=yes"}, {"task", "hidden", "project"}},
                 {{"?taskId=" + task, "?running=no", "?running="}, {"task"}},
                 {{"?running=true"}, {"project"}},
                 {{"?taskId=" + unknownId}, {}}});
    const auto addNote = [&](const std::string& members) {
        clock.advance(1min);
        return add("notes", "{" + members + "}");
    };
    addNote(R"("title": "Call", "content": "about bread")");
    addNote(fmt::format(R"("title": "Hidden", "projectId": "{}")", old));
    const auto pinned = addNote(fmt::format(R"("title": "Pinned", "projectId": "{}")", site));
    for (const bool isPinned : {true, false, true})
        EXPECT_EQ(post("/api/notes/" + pinned + "/pin")["isPinned"], isPinned);
    expectLists("/api/notes", "title",
                {{{"", "?projectId=garbage"}, {"Pinned", "Call"}},
                 {{"?archived=1"}, {"Pinned", "Hidden", "Call"}},
                 {{"?title=CALL", "?search=Bread", "?pinned=no"}, {"Call"}},
                 {{"?projectId=" + site, "?pinned=yes", "?title=pin"}, {"Pinned"}},
                 {{"?title=bread", "?title=", "?search="}, {}}});
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
