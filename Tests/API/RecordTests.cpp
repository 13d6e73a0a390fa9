#include "API/APITest.h"

namespace quillorn {
namespace {

/// What all resources have in common: making, changing and deleting records.
using RecordTest = RunningAPITest;

TEST_F(RecordTest, theLeastOfARequestGetsTheDefaults) {
    const struct {
        std::string resource, body, members;
    } cases[] = {
        {"clients", R"({"name": " A "})",
         R"("name": " A ", "color": "#007AFF", "icon": "building.2.fill", "isArchived": false, "projectCount": 0,
            "activeProjectCount": 0, "totalTaskCount": 0, "activeTaskCount": 0, "totalTimeSpent": 0.0)"},
        {"projects", R"({"name": "B"})",
         R"("name": "B", "color": "#007AFF", "isArchived": false, "taskCount": 0, "completedTaskCount": 0,
            "totalTimeSpent": 0.0)"},
        {"tasks", R"({"title": " A \"b\" "})",
         R"("title": " A \"b\" ", "priority": 1, "status": 0, "depth": 0, "isCompleted": false, "isOverdue": false,
            "sortOrder": 0, "completedSubtaskCount": 0, "subtaskCount": 0, "tags": [], "totalTimeSpent": 0.0)"},
        {"tags", R"({"name": "b"})", R"("name": "b", "color": "#007AFF", "taskCount": 0)"},
        {"notes", "{}", R"("title": "", "content": "", "isPinned": false, "preview": "")"},
        {"time-entries", "{}",
         R"("startTime": "2026-01-15T12:00:00Z", "duration": 0.0, "isRunning": true, "displayName": "Unassigned")"},
    };
    for (const auto& [resource, body, members] : cases) {
        const Answer made = post("/api/" + resource, body);
        EXPECT_EQ(
            made.head,
            "HTTP/1.1 201 Created\r\nConnection: close\r\nContent-Type: application/json\r\nServer: Tidewire 9.8");
        const std::string id = *made["id"].asString(), date = R"("2026-01-15T12:00:00Z")";
        const std::string dates =
            resource == "time-entries" ? "" : fmt::format(R"(, "createdAt": {0}, "updatedAt": {0})", date);
        const Json expected = Json::parse(object(R"("id": "{}", {}{})", id, members, dates));
        EXPECT_EQ(made.body, expected.text(Json::Style::pretty));
        EXPECT_EQ(get("/api/" + resource + "/" + id).body, made.body);
    }
}

TEST_F(RecordTest, aTaskTakesEverythingThatTheRequestSays) {
    const auto project = addProject("P"), tag = addTag("blue"), parent = addTask(R"({"title": "Parent"})");
    const Answer task = post("/api/tasks", object(R"("title": "T", "description": "D", "priority": 0, "status": 3,
        "dueDate": "2026-01-15T11:59:59Z", "projectId": "{}", "tagIds": ["{}", "{}", "{}"], "parentTaskId": "{}",
        "sourceTitle": "S", "sourceURL": "x:y")",
                                                  project, tag, unknownId, tag, parent));
    expectMembers(task, R"("description": "D", "priority": 0, "status": 3, "projectId": "{}", "sourceTitle": "S",
        "sourceURL": "x:y", "isCompleted": true, "isOverdue": false, "completedAt": "2026-01-15T12:00:00Z",
        "parentTaskId": null, "dueDate": "2026-01-15T11:59:59Z", "tags": [{}])",
                  project, get("/api/tags/" + tag).body);
    const Answer empty = post("/api/tasks", R"({"title": "T", "sourceTitle": "", "sourceURL": "", "tagIds": []})");
    expectMembers(empty, R"("sourceTitle": null, "sourceURL": null)");
}

TEST_F(RecordTest, anUpdateChangesWhatItNamesAndTheDate) {
    const auto client = addClient("C"), project = addProject("P"), other = addProject("Other"), tag = addTag("blue");
    const auto task = add("tasks", object(R"("title": "T", "description": "D", "dueDate": "2026-02-01T00:00:00Z",
        "projectId": "{}", "tagIds": ["{}"], "sourceTitle": "S", "sourceURL": "x:y", "priority": 2)",
                                          project, tag));
    const auto entry = add("time-entries", R"({"startTime": "2026-01-15T10:00:00Z", "notes": "N",
        "endTime": "2026-01-15T11:00:00Z"})");
    struct Update {
        std::string body;
        std::optional<std::string> changes{}; // the same where it is left out; null takes a member away
    };
    const auto check = [&](const std::string& path, std::vector<Update> updates) {
        updates.insert(updates.begin(), {"{}"});
        Json::Object expected = *get(path).json().asObject();
        for (const auto& [body, changes] : updates) {
            clock.advance(1min);
            if (expected.contains("updatedAt"))
                expected["updatedAt"] = formatISO8601(clock.now());
            const Json changed = Json::parse(changes.value_or(body));
            for (const auto& [key, value] : *changed.asObject())
                value.isNull() ? void(expected.erase(key)) : void(expected[key] = value);
            const Answer answer = put(path, body);
            EXPECT_EQ(answer.status, 200);
            EXPECT_EQ(answer.json(), Json(expected)) << body;
            EXPECT_EQ(get(path).body, answer.body);
        }
    };
    check("/api/clients/" + client,
          {{R"({"name": null, "description": null, "color": null, "icon": null, "isArchived": null, "taskCount": 7})",
            "{}"},
           {R"({"name": "N", "color": "#"})"},
           {R"({"description": "", "icon": ""})"},
           {R"({"isArchived": true})"}});
    check("/api/projects/" + add("projects", R"({"name": "P", "description": "D", "color": "#1"})"),
          {{R"({"name": null, "description": null, "color": null, "clientId": null, "sortOrder": 9})", "{}"},
           {R"({"name": "N", "description": "", "color": "#2"})"},
           {object(R"("clientId": "{}", "isArchived": true)", client)},
           {R"({"isArchived": false})"}});
    check("/api/tasks/" + task,
          {{R"({"title": null, "description": null, "dueDate": null, "priority": null, "status": null, "tagIds": null,
               "sortOrder": null, "projectId": null, "parentTaskId": null, "sourceTitle": null, "sourceURL": null})",
            "{}"},
           {object(R"("parentTaskId": "{}")", task), "{}"},
           {R"({"title": "U"})"},
           {R"({"description": ""})"},
           {R"({"dueDate": "2026-03-01T00:00:00Z"})"},
           {R"({"priority": 0, "sortOrder": -5})"},
           {object(R"("projectId": "{}")", other)},
           {R"({"sourceTitle": "", "sourceURL": ""})", R"({"sourceTitle": null, "sourceURL": null})"},
           {R"({"tagIds": []})", R"({"tags": []})"},
           {R"({"status": 2})"}});
    check("/api/tags/" + tag,
          {{R"({"name": null, "color": null})", "{}"}, {R"({"name": "c"})"}, {R"({"color": "#Ff9500"})"}});
    const std::string longText(251, 'x');
    check("/api/notes/" + add("notes", "{}"),
          {{R"({"title": null, "content": null, "isPinned": null, "projectId": null})", "{}"},
           {R"({"title": "T", "isPinned": true})"},
           {R"({"content": " a\nb "})", R"({"content": " a\nb ", "preview": "a b"})"},
           {object(R"("content": "{}")", longText),
            object(R"("content": "{}", "preview": "{}...")", longText, longText.substr(1))},
           {object(R"("projectId": "{}")", project)},
           {object(R"("projectId": "{}", "isPinned": false, "title": "")", other)}});
    check("/api/time-entries/" + entry,
          {{R"({"startTime": null, "endTime": null, "notes": null, "taskId": null, "projectId": null, "title": "X"})",
            "{}"},
           {R"({"notes": ""})"},
           {R"({"startTime": "2026-01-15T10:30:00Z"})", R"({"startTime": "2026-01-15T10:30:00Z", "duration": 1800.0})"},
           // The rule is about what one request says.
           {R"({"endTime": "2026-01-15T10:00:00Z"})", R"({"endTime": "2026-01-15T10:00:00Z", "duration": -1800.0})"},
           {object(R"("projectId": "{}")", project),
            object(R"("projectId": "{}", "displayName": "{}")", project, "P (General)")},
           {object(R"("taskId": "{}")", task), object(R"("taskId": "{}", "displayName": "U")", task)}});
}

TEST_F(RecordTest, anEntryRunsUntilItIsStoppedOnce) {
    const std::string path = "/api/time-entries/" + add("time-entries", "{}");
    clock.advance(90s);
    expectMembers(get(path), R"("duration": 90.0, "isRunning": true)");
    const Answer stopped = post(path + "/stop");
    EXPECT_EQ(stopped.status, 200);
    expectMembers(stopped, R"("endTime": "2026-01-15T12:01:30Z", "isRunning": false, "duration": 90.0)");
    clock.advance(1min);
    const Answer again = post(path + "/stop");
    EXPECT_EQ(again.fault(), "400 bad_request Time entry is not running");
    EXPECT_EQ(again["details"], Json());
    EXPECT_EQ(get(path).body, stopped.body);
    expectMembers(
        post("/api/time-entries", R"({"startTime": "2026-01-15T10:00:00Z", "endTime": "2026-01-15T10:00:00Z"})"),
        R"("duration": 0.0, "isRunning": false)");
}

TEST_F(RecordTest, whatIsRefusedOrMissingLeavesNothingBehind) {
    std::atomic<int> completions = 0;
    const auto token = store.notifications.observe(quillornTaskCompleted, [&](const Notification&) { ++completions; });
    const auto task = addTask(R"({"title": "T"})");
    const std::map<std::string, std::pair<std::string, const char*>> records{
        {"projects", {add("projects", R"({"name": "P"})"), "Project"}},
        {"tasks", {task, "Task"}},
        {"time-entries", {add("time-entries", R"({"endTime": "2026-01-15T12:00:00Z"})"), "TimeEntry"}},
        {"notes", {add("notes", "{}"), "Note"}}};
    const std::string link = object(R"("notes": "X", "title": "X", "status": 3, "projectId": "{}")", unknownId);
    const std::tuple<std::string, std::string, std::string> cases[] = {
        {"projects", object(R"("name": "New", "clientId": "{}")", unknownId), "Client"},
        {"tasks", link, "Project"},
        {"time-entries", link, "Project"},
        {"time-entries", object(R"("taskId": "{0}", "projectId": "{0}")", unknownId), "Task"},
        {"time-entries", object(R"("taskId": "{}", "projectId": "{}")", task, unknownId), "Project"},
        {"notes", link, "Project"}};
    const std::string before = everything();
    clock.advance(1min);
    for (const auto& [resource, body, word] : cases) {
        const std::string path = "/api/" + resource + "/";
        const auto& [id, ownWord] = records.at(resource);
        for (const Answer& answer : {post("/api/" + resource, body), put(path + id, body)})
            EXPECT_EQ(answer.fault(), "404 not_found " + word + " with id " + unknownId + " not found");
        // The record is looked for before its links.
        EXPECT_THAT(put(path + unknownId, body).fault(), StartsWith(fmt::format("404 not_found {} with", ownWord)));
    }
    EXPECT_EQ(everything(), before);
    EXPECT_EQ(completions, 0);
}

TEST_F(RecordTest, whatIsDeletedIsGone) {
    const auto client = addClient("C"), project = addProjectOf(client, "P"), tag = addTag("red");
    const auto task = addTask(object(R"("title": "T", "projectId": "{}", "tagIds": ["{}"])", project, tag));
    const std::string link = object(R"("taskId": "{}")", task);
    const auto entry = add("time-entries", link), note = add("notes", "{}");
    for (const std::string& record : {"time-entries/" + entry, "notes/" + note, "tags/" + tag, "tasks/" + task,
                                      "projects/" + project, "clients/" + client}) {
        const Answer answer = call("DELETE", "/api/" + record);
        EXPECT_EQ(answer.head, "HTTP/1.1 204 No Content\r\nConnection: close\r\nServer: Tidewire 9.8") << record;
        EXPECT_EQ(answer.body, "");
        EXPECT_EQ(get("/api/" + record).status, 404);
        EXPECT_EQ(call("DELETE", "/api/" + record).status, 404);
        if (record.starts_with("tags"))
            expectMembers(get("/api/tasks/" + task), R"("tags": [], "projectId": "{}")", project);
    }
}

} // namespace
} // namespace quillorn
