#include "API/APITest.h"
#include "Support/CrowdedStore.h"
#include "Support/Threads.h"

#include <atomic>

namespace quillorn {
namespace {

class TaskEndpointTest : public RunningAPITest {
  protected:
    std::string path(const std::string& task) const { return "/api/tasks/" + task; }
    /// Adds an entry that began so long ago; an absent end means that it runs.
    void addEntry(const std::string& task, std::chrono::seconds ago, std::optional<std::chrono::seconds> length = {}) {
        const Date began = clock.now() - ago;
        const auto end = length ? fmt::format(R"(, "endTime": "{}")", formatISO8601(began + *length)) : "";
        add("time-entries", object(R"("taskId": "{}", "startTime": "{}"{})", task, formatISO8601(began), end));
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
    Observation m_token =
        store.notifications.observe(quillornTaskCompleted, [this](const Notification&) { ++completions; });
};

TEST_F(TaskEndpointTest, totalsCountSubtasksTimeAndAncestors) {
    const auto top = addTask(R"({"title": "Top", "dueDate": "2026-01-15T11:00:00Z"})");
    const auto middle = addTask(R"({"title": "Middle", "status": 3})"), leaf = addTask(R"({"title": "Leaf"})");
    makeSubtask(middle, top);
    makeSubtask(leaf, middle);
    addEntry(top, 100s, 30s);
    addEntry(top, 10s);
    addEntry(leaf, 50s, 50s);
    expectMembers(get(path(top)), R"("subtaskCount": 1, "completedSubtaskCount": 1, "totalTimeSpent": 40.0,
        "isOverdue": true, "depth": 0)");
    expectMembers(get(path(leaf)), R"("depth": 2, "parentTaskId": "{}")", middle);
}

TEST_F(TaskEndpointTest, whatAListSaysOfARecordIsWhatTheRecordSaysOfItself) {
    change(*store.container, [](ModelContext& context) { crowd(context, 5); });
    for (const std::string list : {"clients", "projects", "tasks", "tags", "time-entries", "notes"}) {
        const Json records = get("/api/" + list).json();
        EXPECT_GE(records.asArray()->size(), 5U);
        for (const Json& each : *records.asArray())
            EXPECT_EQ(each, get("/api/" + list + "/" + *each.find("id")->asString()).json());
    }
}

TEST_F(TaskEndpointTest, aStatusFollowsTheRuleOfCompletion) {
    const auto task = addTask(R"({"title": "T"})");
    const struct {
        std::string suffix, body; // without a suffix: an update
        int status;
        Json completedAt;
        int completionsSoFar;
    } cases[] = {
        {"", R"({"status": 3})", 3, "2026-01-15T12:01:00Z", 1},
        {"", R"({"status": 3})", 3, "2026-01-15T12:01:00Z", 1},
        {"/complete", "", 3, "2026-01-15T12:03:00Z", 1},
        {"", R"({"status": 2})", 2, Json(), 1},
        {"/incomplete", "", 2, Json(), 1},
        {"/complete", "", 3, "2026-01-15T12:06:00Z", 2},
        {"/complete", "", 3, "2026-01-15T12:07:00Z", 2},
        {"/incomplete", "", 0, Json(), 2},
    };
    for (const auto& [suffix, body, status, completedAt, completionsSoFar] : cases) {
        clock.advance(1min);
        const Answer answer = call(suffix.empty() ? "PUT" : "POST", path(task) + suffix, body);
        EXPECT_EQ(answer.status, 200);
        expectMembers(answer, R"("status": {}, "completedAt": {}, "isCompleted": {}, "updatedAt": "{}")", status,
                      completedAt.text(), !completedAt.isNull(), formatISO8601(clock.now()));
        EXPECT_EQ(completions, completionsSoFar);
    }
    addTask(R"({"title": "Done when it was made", "status": 3})");
    EXPECT_EQ(completions, 3);
}

TEST_F(TaskEndpointTest, completionStopsTheTimeOfTheTaskAlone) {
    const auto task = addTask(R"({"title": "T"})"), subtask = addTask(R"({"title": "S"})");
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

TEST_F(TaskEndpointTest, tagsAreAddedReplacedAndRemoved) {
    const auto red = addTag("red"), blue = addTag("blue"), task = addTask(R"({"title": "T"})");
    const auto ids = [](const std::vector<std::string>& tags) {
        return object(R"("tagIds": ["{}"])", fmt::join(tags, R"(", ")"));
    };
    const struct {
        std::string method, suffix, body;
        std::vector<std::string> names;
    } cases[] = {
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
    for (const auto& [method, suffix, body, names] : cases) {
        clock.advance(1min);
        const Answer answer = call(method, path(task) + suffix, body);
        EXPECT_EQ(answer.status, 200);
        EXPECT_EQ(tagNames(answer), names) << method << suffix << body;
        EXPECT_EQ(answer["updatedAt"], formatISO8601(clock.now()));
        EXPECT_EQ(get(path(task)).body, answer.body);
    }
    // Far more ids than SQLite has parameters.
    EXPECT_THAT(tagNames(post(path(task) + "/tags", ids(std::vector<std::string>(50'000, blue)))), ElementsAre("blue"));
}

TEST_F(TaskEndpointTest, manyClientsWorkAtOnce) {
    constexpr int clients = 8, rounds = 15;
    const auto shared = addTask(R"({"title": "Shared"})");
    onThreads(clients, [&](int client) {
        for (int round = 0; round < rounds; ++round) {
            const auto task = addTask(object(R"("title": "{} {}")", client, round));
            // Every other client changes another field of the one task.
            const char* change = client % 2 == 0 ? R"({"description": "even"})" : R"({"priority": 3})";
            EXPECT_EQ(put(path(shared), change).status, 200);
            EXPECT_EQ(post(path(task) + "/complete")["isCompleted"], true);
            EXPECT_EQ(get("/api/tasks").status, 200);
            if (round % 3 == 0) {
                EXPECT_EQ(call("DELETE", path(task)).status, 204);
            }
        }
    });
    EXPECT_EQ(get("/api/tasks?completed=true").all("id").size(), clients * rounds * 2 / 3U);
    expectMembers(get(path(shared)), R"("description": "even", "priority": 3)");
    EXPECT_EQ(completions, clients * rounds);
}

} // namespace
} // namespace quillorn
