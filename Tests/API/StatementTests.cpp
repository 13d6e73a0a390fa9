#include "API/APITest.h"
#include "Support/CrowdedStore.h"

namespace quillorn {
namespace {

/// "{task}" and so on stand for ids.
const char* const reads = R"(
    clients clients?archived=1&name=a clients/{client} clients/{client}/projects?archived=1
    projects projects?name=a&clientId={client} projects/{project} projects/{project}/tasks?completed=no
    projects/{project}/notes projects/{project}/time-entries
    tasks tasks?title=a&completed=no&status=0&priority=1 tasks?tagId={tag} tasks/{task} tasks/{task}/time-entries
    tags tags/{tag} tags/{tag}/tasks
    time-entries time-entries?taskId={task}&projectId={project}&running=no time-entries/{entry}
    notes notes?title=a&search=a&projectId={project}&pinned=no notes/{note})";

struct Change {
    std::string method, path, body{};
};

/// What deletes comes last, the leaves first.
const Change changes[] = {
    {"POST", "clients", R"({"name": "New"})"},
    {"PUT", "clients/{client}", R"({"name": "Changed", "isArchived": false})"},
    {"POST", "projects", R"({"name": "New", "clientId": "{client}"})"},
    {"PUT", "projects/{otherProject}", R"({"name": "Changed", "clientId": "{client}"})"},
    {"POST", "time-entries/{entry}/stop"},
    {"POST", "tasks", R"({"title": "New", "tagIds": ["{tag}"]})"},
    {"PUT", "tasks/{task}", R"({"title": "Changed", "status": 1, "tagIds": ["{tag}"]})"},
    {"POST", "tasks/{task}/complete"},
    {"POST", "tasks/{task}/incomplete"},
    {"POST", "tasks/{task}/tags", R"({"tagIds": ["{tag}"]})"},
    {"POST", "tags", R"({"name": "New"})"},
    {"PUT", "tags/{tag}", R"({"name": "Changed"})"},
    {"POST", "time-entries", R"({"taskId": "{task}", "projectId": "{project}"})"},
    {"PUT", "time-entries/{entry}", R"({"taskId": "{task}", "projectId": "{otherProject}"})"},
    {"POST", "notes", R"({"projectId": "{project}"})"},
    {"PUT", "notes/{note}", R"({"title": "Changed", "projectId": "{otherProject}"})"},
    {"POST", "notes/{note}/pin"},
    {"DELETE", "notes/{note}"},
    {"DELETE", "time-entries/{entry}"},
    {"DELETE", "tasks/{task}/tags/{tag}"},
    {"DELETE", "tags/{tag}"},
    {"DELETE", "tasks/{task}"},
    {"DELETE", "projects/{project}"},
    {"DELETE", "clients/{client}"},
};

class StatementTest : public APITest {
  protected:
    /// Statements of each route over a fresh store of so many records of each kind.
    std::map<std::string, std::uint64_t> statementsWith(int count) {
        TestStore fresh;
        serve(*fresh.container);
        start();
        StoreIds ids;
        change(*fresh.container, [&](ModelContext& context) { ids = crowd(context, count); });
        const std::pair<int, const char*> sizes[] = {
            {count, "clients projects tasks tags tags/{tag}/tasks"},
            {2 * count, "time-entries notes projects/{project}/notes"},
            {(count + 1) / 2, "clients/{client}/projects projects/{project}/tasks"},
            {3 * count / 2 + 1, "projects/{project}/time-entries"},
            {count + 1, "tasks/{task}/time-entries"}};
        for (const auto& [size, lists] : sizes) {
            std::istringstream words(lists);
            for (std::string path; words >> path;)
                EXPECT_EQ(get("/api/" + withIds(path, ids)).all("id").size(), static_cast<std::size_t>(size)) << path;
        }
        std::map<std::string, std::uint64_t> counts;
        const auto measure = [&](const std::string& method, const std::string& path, const std::string& body = "") {
            const auto before = fresh.container->executedStatements();
            EXPECT_LT(call(method, "/api/" + withIds(path, ids), withIds(body, ids)).status, 300) << method << path;
            counts[method + " " + path] = fresh.container->executedStatements() - before;
        };
        std::istringstream words(reads);
        for (std::string path; words >> path;)
            measure("GET", path);
        for (const auto& [method, path, body] : changes)
            measure(method, path, body);
        server.reset();
        return counts;
    }
};

TEST_F(StatementTest, everyRouteTakesAsManyForManyRowsAsForFew) {
    const auto few = statementsWith(10);
    for (const auto& [route, count] : statementsWith(1000)) {
        EXPECT_EQ(count, few.at(route)) << route;
        EXPECT_LE(count, 25U) << route;
    }
}

} // namespace
} // namespace quillorn
