#include "API/APITest.h"
#include "Models/Project.h"
#include "Models/ProjectTask.h"
#include "Models/Tag.h"
#include "Models/TimeEntry.h"

#include <fmt/core.h>

namespace quillorn {
namespace {

using ::testing::ElementsAreArray;
using ::testing::IsEmpty;

TEST_F(APITest, aListIsFilteredAndSortedByDueDate) {
    start();
    const std::string active = addProject("Active");
    const std::string archived = addProject("Archived", true);
    const std::string ofArchived = addProject("Of an archived client", false, true);
    const std::string tag = addTag("blue");
    const auto add = [&](const std::string& title, const std::string& more) {
        return addTask(R"({"title": ")" + title + "\"" + more + "}");
    };
    add("Write caf\u00e9 MENU", R"(, "dueDate": "2026-03-01T00:00:00Z", "priority": 3, "tagIds": [")" + tag + "\"]");
    add("write letter", R"(, "dueDate": "2026-02-01T00:00:00Z", "projectId": ")" + active + "\"");
    add("Undated", R"(, "status": 1)");
    add("Done", R"(, "status": 3, "dueDate": "2026-02-01T00:00:00Z")");
    add("In archive", R"(, "dueDate": "2026-01-01T00:00:00Z", "projectId": ")" + archived + "\"");
    add("At client", R"(, "dueDate": "2026-01-02T00:00:00Z", "projectId": ")" + ofArchived + "\"");

    const std::vector<std::string> visible{"Undated", "write letter", "Done", "Write caf\u00e9 MENU"};
    const std::vector<std::string> all{"Undated",      "In archive", "At client",
                                       "write letter", "Done",       "Write caf\u00e9 MENU"};
    using Titles = std::vector<std::string>;
    const std::pair<std::string, Titles> cases[] = {
        {"", visible},
        {"?archived=false", visible},
        {"?archived=", visible},
        {"?archived=true", all},
        {"?archived=YES", all},
        {"?archived=1", all},
        {"?Archived=true", visible},
        {"?archived=no&archived=true", visible},
        {"?title=WRITE", {"write letter", "Write caf\u00e9 MENU"}},
        {"?title=CAF\xC9", {"Write caf\u00e9 MENU"}}, // the head of a request is Latin-1

        {"?title=cafe", {}},
        {"?title=", {}},
        {"?title=write%20letter", {}},
        {"?completed=true", {"Done"}},
        {"?completed=false", {"Undated", "write letter", "Write caf\u00e9 MENU"}},
        {"?completed=maybe", {"Undated", "write letter", "Write caf\u00e9 MENU"}},
        {"?status=1", {"Undated"}},
        {"?status=+1", {"Undated"}},
        {"?status=9", {}},
        {"?status=-1", {}},
        {"?status=", visible},
        {"?status=one", visible},
        {"?status=1x", visible},
        {"?status=+-1", visible},
        {"?status=99999999999999999999", visible},
        {"?priority=3", {"Write caf\u00e9 MENU"}},
        {"?priority=1&title=e&completed=no", {"Undated", "write letter"}},
        {"?projectId=" + active, {"write letter"}},
        {"?projectId=" + archived, {}},
        {"?archived=true&projectId=" + archived, {"In archive"}},
        {"?projectId=" + unknownId, {}},
        {"?projectId=garbage", visible},
        {"?tagId=" + tag, {"Write caf\u00e9 MENU"}},
        {"?tagId=" + tag + "&completed=true", {}},
        {"?tagId=garbage", visible},
    };
    for (const auto& [query, titles] : cases)
        EXPECT_THAT(get("/api/tasks" + query).all("title"), ElementsAreArray(titles.begin(), titles.end())) << query;
}

/// `count` tasks, each with a project, tags and time; the first has a subtask and an entry for each of the others.
UUID fill(ModelContext& context, int count, Date now) {
    auto& project = context.insert<Project>(Project::Arguments{"P"}, now);
    std::vector<Tag*> tags;
    for (int i = 0; i < 20; ++i)
        tags.push_back(&context.insert<Tag>(Tag::Arguments{fmt::format("t{}", i)}, now));
    ProjectTask* first = nullptr;
    for (int i = 0; i < count; ++i) {
        auto& task = context.insert<ProjectTask>(
            ProjectTask::Arguments{.title = fmt::format("Task {}", i), .project = &project}, now);
        task.setTags({tags[static_cast<std::size_t>(i) % 20], tags[static_cast<std::size_t>(i + 7) % 20]});
        if (first == nullptr)
            first = &task;
        else
            task.setParentTask(first);
        for (ProjectTask* owner : {first, &task})
            context
                .insert<TimeEntry>(
                    TimeEntry::Arguments{.task = owner, .project = {}, .startTime = now - std::chrono::minutes(i + 1)})
                .setEndTime(now);
    }
    return first->id();
}

struct MeasuredRoute {
    std::string method;
    std::string path;
    std::string body{};
};

/// By a name that doesn't depend on the ids.
std::vector<std::pair<std::string, MeasuredRoute>> everyRoute(const std::string& task, const std::string& tag) {
    const std::string path = "/api/tasks/" + task;
    const std::string tags = R"("tagIds": [")" + tag + "\"]}";
    return {{"list", {"GET", "/api/tasks"}},
            {"filtered list", {"GET", "/api/tasks?title=task&completed=no&status=0&priority=1"}},
            {"list of a tag", {"GET", "/api/tasks?tagId=" + tag}},
            {"get", {"GET", path}},
            {"time entries", {"GET", path + "/time-entries"}},
            {"create", {"POST", "/api/tasks", R"({"title": "New", )" + tags}},
            {"update", {"PUT", path, R"({"title": "Changed", "status": 1, )" + tags}},
            {"complete", {"POST", path + "/complete"}},
            {"incomplete", {"POST", path + "/incomplete"}},
            {"add tags", {"POST", path + "/tags", "{" + tags}},
            {"remove tag", {"DELETE", path + "/tags/" + tag}},
            {"delete", {"DELETE", path}}};
}

class StatementTest : public APITest {
  protected:
    /// Statements of each route over a fresh store of so many tasks.
    std::map<std::string, std::uint64_t> statementsWith(int rows) {
        TestStore fresh;
        serve(*fresh.container);
        start();
        ModelContext context(*fresh.container, ModelContext::Intent::update);
        const std::string task = fill(context, rows, clock.now()).string();
        context.save();
        const std::string tag = context.fetch<Tag>().front()->id().string();
        context.endReading();

        EXPECT_EQ(get("/api/tasks").all("id").size(), static_cast<std::size_t>(rows));
        EXPECT_EQ(get("/api/tasks/" + task)["subtaskCount"], rows - 1);
        EXPECT_EQ(get("/api/tasks/" + task + "/time-entries").all("id").size(), static_cast<std::size_t>(rows + 1));
        std::map<std::string, std::uint64_t> counts;
        for (const auto& [name, route] : everyRoute(task, tag)) {
            const auto before = fresh.container->executedStatements();
            EXPECT_LT(call(route.method, route.path, route.body).status, 300) << name;
            counts[name] = fresh.container->executedStatements() - before;
        }
        server.reset();
        return counts;
    }
};

TEST_F(StatementTest, everyRouteTakesAsManyForManyRowsAsForFew) {
    EXPECT_EQ(statementsWith(10), statementsWith(1000));
}

} // namespace
} // namespace quillorn
