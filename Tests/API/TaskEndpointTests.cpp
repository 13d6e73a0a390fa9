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

TEST_F(TaskEndpointTest, whatAListSaysOfARecordIsWhatTheRecordSaysOfItself) {
    change(*store.container, [](ModelContext& context) { crowd(context, 5); });
    for (const std::string list : {"clients", "projects", "tasks", "tags", "time-entries", "notes"}) {
        const Json records = get("/api/" + list).json();
        EXPECT_GE(records.asArray()->size(), 5U);
        for (const Json& each : *records.asArray())
            EXPECT_EQ(each, get("/api/" + list + "/" + *each.find("id")->asString()).json());
    }
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

} // namespace
} // namespace quillorn
