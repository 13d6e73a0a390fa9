#include "API/APITest.h"
#include "Models/ProjectTask.h"
#include "Models/TimeEntry.h"
#include "Platform/NotificationCenter.h"

#include <atomic>
#include <fmt/format.h>
#include <thread>

namespace quillorn {
namespace {

using namespace std::chrono_literals;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;

class TaskEndpointTest : public APITest {
  protected:
    TaskEndpointTest() {
        m_token = store.notifications.observe(quillornTaskCompleted, [this](const Notification&) { ++completions; });
        start();
    }

    std::string path(const std::string& task) const { return "/api/tasks/" + task; }
    /// Adds an entry that began so long ago; an absent end means that it runs.
    void addEntry(const std::string& task, std::chrono::seconds ago, std::optional<std::chrono::seconds> length = {}) {
        inStore([&](ModelContext& context) {
            const Date began = clock.now() - ago;
            auto& entry = context.insert<TimeEntry>(TimeEntry::Arguments{
                .task = context.find<ProjectTask>(*UUID::parse(task)), .project = {}, .startTime = began});
            if (length)
                entry.setEndTime(began + *length);
            return 0;
        });
    }
    void makeSubtask(const std::string& task, const std::string& parent) {
        inStore([&](ModelContext& context) {
            context.find<ProjectTask>(*UUID::parse(task))
                ->setParentTask(context.find<ProjectTask>(*UUID::parse(parent)));
            return 0;
        });
    }
    static std::vector<std::string> tagNames(const Answer& task) {
        std::vector<std::string> names;
        const Json tags = task["tags"];
        for (const Json& tag : *tags.asArray())
            names.push_back(*tag.find("name")->asString());
        return names;
    }

    std::atomic<int> completions = 0;

  private:
    NotificationCenter::Token m_token;
};

TEST_F(TaskEndpointTest, aTaskOfATitleAloneGetsTheDefaults) {
    const Answer answer = post("/api/tasks", R"({"title": " A \"b\" "})");
    EXPECT_EQ(answer.head, "HTTP/1.1 201 Created\r\nContent-Type: application/json\r\nServer: Tidewire 9.8");
    EXPECT_EQ(answer.body, R"({
  "completedSubtaskCount": 0,
  "createdAt": "2026-01-15T12:00:00Z",
  "depth": 0,
  "id": ")" + *answer["id"].asString() +
                               R"(",
  "isCompleted": false,
  "isOverdue": false,
  "priority": 1,
  "sortOrder": 0,
  "status": 0,
  "subtaskCount": 0,
  "tags": [],
  "title": " A \"b\" ",
  "totalTimeSpent": 0.0,
  "updatedAt": "2026-01-15T12:00:00Z"
})");
    EXPECT_EQ(get(path(*answer["id"].asString())).body, answer.body);
}

TEST_F(TaskEndpointTest, aTaskTakesEverythingThatTheRequestSays) {
    const auto project = addProject("P");
    const auto tag = addTag("blue");
    const auto parent = addTask(R"({"title": "Parent"})");
    const Answer task =
        post("/api/tasks", fmt::format(R"({{"title": "T", "description": "D", "priority": 0, "status": 3,
        "dueDate": "2026-01-15T11:59:59Z", "projectId": "{}", "tagIds": ["{}", "{}", "{}"], "parentTaskId": "{}",
        "sourceTitle": "S", "sourceURL": "x:y"}})",
                                       project, tag, unknownId, tag, parent));
    const std::pair<const char*, Json> expected[] = {
        {"description", "D"},
        {"priority", 0},
        {"status", 3},
        {"projectId", project},
        {"sourceTitle", "S"},
        {"sourceURL", "x:y"},
        {"isCompleted", true},
        {"isOverdue", false},
        {"completedAt", "2026-01-15T12:00:00Z"},
        {"parentTaskId", Json()},
        {"dueDate", "2026-01-15T11:59:59Z"},
    };
    for (const auto& [key, value] : expected)
        EXPECT_EQ(task[key], value) << key;
    EXPECT_THAT(tagNames(task), ElementsAre("blue"));
    EXPECT_EQ(*task["tags"].asArray()->front().find("taskCount"), 1);
    EXPECT_EQ(completions, 1);
    const Answer empty = post("/api/tasks", R"({"title": "T", "sourceTitle": "", "sourceURL": "", "tagIds": []})");
    EXPECT_EQ(empty["sourceTitle"], Json());
    EXPECT_EQ(empty["sourceURL"], Json());
}

TEST_F(TaskEndpointTest, totalsCountSubtasksTimeAndAncestors) {
    const auto top = addTask(R"({"title": "Top", "dueDate": "2026-01-15T11:00:00Z"})");
    const auto middle = addTask(R"({"title": "Middle", "status": 3})");
    const auto leaf = addTask(R"({"title": "Leaf"})");
    makeSubtask(middle, top);
    makeSubtask(leaf, middle);
    addEntry(top, 100s, 30s);
    addEntry(top, 10s);
    addEntry(leaf, 50s, 50s);
    const Answer answer = get(path(top));
    EXPECT_EQ(answer["subtaskCount"], 1);
    EXPECT_EQ(answer["completedSubtaskCount"], 1);
    EXPECT_EQ(answer["totalTimeSpent"], 40.0);
    EXPECT_EQ(answer["isOverdue"], true);
    EXPECT_EQ(get(path(leaf))["depth"], 2);
    EXPECT_EQ(get(path(leaf))["parentTaskId"], middle);
    // What a list says of a task is what the task says of itself.
    const Json list = get("/api/tasks").json();
    for (const Json& each : *list.asArray())
        EXPECT_EQ(each, get(path(*each.find("id")->asString())).json());
}

TEST_F(TaskEndpointTest, anUpdateChangesWhatItNamesAndTheDate) {
    const auto project = addProject("P");
    const auto tag = addTag("blue");
    const auto task = addTask(fmt::format(R"({{"title": "T", "description": "D", "dueDate": "2026-02-01T00:00:00Z",
        "projectId": "{}", "tagIds": ["{}"], "sourceTitle": "S", "sourceURL": "x:y", "priority": 2}})",
                                          project, tag));
    const auto other = addProject("Other");
    struct Case {
        std::string body;
        Json::Object changes;
    };
    const Case cases[] = {
        {"{}", {}},
        {R"({"title": null, "description": null, "dueDate": null, "priority": null, "status": null, "sortOrder": null,
             "projectId": null, "tagIds": null, "parentTaskId": null, "sourceTitle": null, "sourceURL": null})",
         {}},
        {R"({"parentTaskId": ")" + task + "\"}", {}},
        {R"({"title": "U"})", {{"title", "U"}}},
        {R"({"description": ""})", {{"description", ""}}},
        {R"({"dueDate": "2026-03-01T00:00:00Z"})", {{"dueDate", "2026-03-01T00:00:00Z"}}},
        {R"({"priority": 0, "sortOrder": -5})", {{"priority", 0}, {"sortOrder", -5}}},
        {R"({"projectId": ")" + other + "\"}", {{"projectId", other}}},
        {R"({"sourceTitle": "", "sourceURL": ""})", {{"sourceTitle", Json()}, {"sourceURL", Json()}}},
        {R"({"tagIds": []})", {{"tags", Json::Array{}}}},
        {R"({"status": 2})", {{"status", 2}}},
    };
    Json::Object expected = *get(path(task)).json().asObject();
    for (const Case& each : cases) {
        clock.advance(1min);
        expected["updatedAt"] = formatISO8601(clock.now());
        for (const auto& [key, value] : each.changes) {
            expected[key] = value;
            if (value.isNull())
                expected.erase(key);
        }
        const Answer answer = put(path(task), each.body);
        EXPECT_EQ(answer.status, 200);
        EXPECT_EQ(answer.json(), Json(expected)) << each.body;
        EXPECT_EQ(get(path(task)).body, answer.body);
    }
}

TEST_F(TaskEndpointTest, aStatusFollowsTheRuleOfCompletion) {
    const auto task = addTask(R"({"title": "T"})");
    struct Case {
        std::string change;
        std::string body;
        int status;
        Json completedAt;
        int completionsSoFar;
    };
    const Case cases[] = {
        {"", R"({"status": 3})", 3, "2026-01-15T12:01:00Z", 1},
        {"", R"({"status": 3})", 3, "2026-01-15T12:01:00Z", 1},
        {"/complete", "", 3, "2026-01-15T12:03:00Z", 1},
        {"", R"({"status": 2})", 2, Json(), 1},
        {"/incomplete", "", 2, Json(), 1},
        {"/complete", "", 3, "2026-01-15T12:06:00Z", 2},
        {"/complete", "", 3, "2026-01-15T12:07:00Z", 2},
        {"/incomplete", "", 0, Json(), 2},
    };
    for (const Case& each : cases) {
        clock.advance(1min);
        const Answer answer = each.change.empty() ? put(path(task), each.body) : post(path(task) + each.change);
        EXPECT_EQ(answer.status, 200);
        EXPECT_EQ(answer["status"], each.status);
        EXPECT_EQ(answer["completedAt"], each.completedAt);
        EXPECT_EQ(answer["isCompleted"], !each.completedAt.isNull());
        EXPECT_EQ(answer["updatedAt"], formatISO8601(clock.now()));
        EXPECT_EQ(completions, each.completionsSoFar);
    }
}

TEST_F(TaskEndpointTest, completionStopsTheTimeOfTheTaskAlone) {
    const auto task = addTask(R"({"title": "T"})");
    const auto subtask = addTask(R"({"title": "S"})");
    makeSubtask(subtask, task);
    addEntry(task, 20s);
    addEntry(task, 30s);
    addEntry(subtask, 40s);
    EXPECT_EQ(post(path(task) + "/complete")["totalTimeSpent"], 50.0);
    clock.advance(1min);
    EXPECT_THAT(get(path(task) + "/time-entries").all("isRunning"), ElementsAre(false, false));
    EXPECT_THAT(get(path(subtask) + "/time-entries").all("isRunning"), ElementsAre(true));
    EXPECT_EQ(get(path(subtask))["isCompleted"], false);
}

TEST_F(TaskEndpointTest, aMissingProjectLeavesNothingBehind) {
    const auto task = addTask(R"({"title": "T"})");
    const std::string before = allTasks();
    clock.advance(1min);
    const std::string body = R"({"title": "New", "status": 3, "projectId": ")" + unknownId + "\"}";
    for (const Answer& answer : {post("/api/tasks", body), put(path(task), body)})
        EXPECT_EQ(code(answer), "404 not_found Project with id " + unknownId + " not found");
    EXPECT_EQ(allTasks(), before);
    EXPECT_EQ(completions, 0);
    // The task is looked for first.
    EXPECT_THAT(code(put(path(unknownId), body)), HasSubstr("Task with id"));
}

TEST_F(TaskEndpointTest, aDeletedTaskTakesItsTimeAlongAndFreesItsSubtasks) {
    const auto parent = addTask(R"({"title": "Parent"})");
    const auto child = addTask(R"({"title": "Child"})");
    makeSubtask(child, parent);
    addEntry(parent, 10s);
    const Answer answer = call("DELETE", path(parent));
    EXPECT_EQ(answer.head, "HTTP/1.1 204 No Content\r\nServer: Tidewire 9.8");
    EXPECT_EQ(answer.body, "");
    EXPECT_EQ(get(path(parent)).status, 404);
    EXPECT_EQ(call("DELETE", path(parent)).status, 404);
    EXPECT_EQ(get(path(child))["parentTaskId"], Json());
    EXPECT_EQ(inStore([](ModelContext& context) { return context.fetch<TimeEntry>().size(); }), 0U);
}

TEST_F(TaskEndpointTest, timeEntriesComeNewestFirst) {
    const auto task = addTask(R"({"title": "T"})");
    const auto subtask = addTask(R"({"title": "S"})");
    makeSubtask(subtask, task);
    EXPECT_EQ(get(path(task) + "/time-entries").body, "[]");
    addEntry(task, 300s, 30s);
    addEntry(task, 100s);
    addEntry(task, 200s, 20s);
    addEntry(subtask, 50s);
    const Answer answer = get(path(task) + "/time-entries");
    EXPECT_THAT(answer.all("duration"), ElementsAre(100.0, 20.0, 30.0));
    EXPECT_THAT(answer.all("isRunning"), ElementsAre(true, false, false));
    EXPECT_THAT(answer.all("taskId"), ElementsAre(task, task, task));
    EXPECT_THAT(answer.all("displayName"), ElementsAre("T", "T", "T"));
    EXPECT_THAT(answer.body, Not(HasSubstr("projectId")));
}

TEST_F(TaskEndpointTest, tagsAreAddedReplacedAndRemoved) {
    const auto red = addTag("red");
    const auto blue = addTag("blue");
    const auto task = addTask(R"({"title": "T"})");
    const auto ids = [](const std::vector<std::string>& tags) {
        return fmt::format(R"({{"tagIds": ["{}"]}})", fmt::join(tags, R"(", ")"));
    };
    struct Case {
        std::string method, suffix, body;
        std::vector<std::string> names;
    };
    const Case cases[] = {
        {"POST", "/tags", ids({red}), {"red"}},
        {"POST", "/tags", ids({red, blue, red}), {"red", "blue"}},
        {"POST", "/tags", ids({unknownId}), {"red", "blue"}},
        {"POST", "/tags", R"({"tagIds": []})", {"red", "blue"}},
        {"DELETE", "/tags/" + red, "", {"blue"}},
        {"DELETE", "/tags/" + red, "", {"blue"}},
        {"DELETE", "/tags/" + unknownId, "", {"blue"}},
        {"PUT", "", ids({red}), {"red"}},
        {"PUT", "", R"({"title": "U"})", {"red"}},
        {"PUT", "", R"({"tagIds": []})", {}},
    };
    for (const Case& each : cases) {
        clock.advance(1min);
        const Answer answer = call(each.method, path(task) + each.suffix, each.body);
        EXPECT_EQ(answer.status, 200);
        EXPECT_EQ(tagNames(answer), each.names) << each.method << each.suffix << each.body;
        EXPECT_EQ(answer["updatedAt"], formatISO8601(clock.now()));
        EXPECT_EQ(get(path(task)).body, answer.body);
    }
    // Far more ids than SQLite has parameters.
    EXPECT_THAT(tagNames(post(path(task) + "/tags", ids(std::vector<std::string>(50'000, blue)))), ElementsAre("blue"));
}

TEST_F(TaskEndpointTest, manyClientsWorkAtOnce) {
    constexpr int clients = 8;
    constexpr int rounds = 15;
    const auto shared = addTask(R"({"title": "Shared"})");
    std::vector<std::thread> threads;
    for (int client = 0; client < clients; ++client)
        threads.emplace_back([&, client] {
            for (int round = 0; round < rounds; ++round) {
                const auto task = addTask(fmt::format(R"({{"title": "{} {}"}})", client, round));
                // Every other client changes another field of the one task.
                const bool even = client % 2 == 0;
                EXPECT_EQ(put(path(shared), even ? R"({"description": "even"})" : R"({"priority": 3})").status, 200);
                EXPECT_EQ(post(path(task) + "/complete")["isCompleted"], true);
                EXPECT_EQ(get("/api/tasks").status, 200);
                if (round % 3 == 0) {
                    EXPECT_EQ(call("DELETE", path(task)).status, 204);
                }
            }
        });
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(get("/api/tasks?completed=true").all("id").size(), clients * rounds * 2 / 3U);
    EXPECT_EQ(get(path(shared))["description"], "even");
    EXPECT_EQ(get(path(shared))["priority"], 3);
    EXPECT_EQ(completions, clients * rounds);
}

} // namespace
} // namespace quillorn
