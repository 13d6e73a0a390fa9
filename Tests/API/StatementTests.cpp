#include "API/APITest.h"
#include "Support/CrowdedStore.h"

namespace quillorn {
namespace {

struct MeasuredRoute {
    std::string method, path, body{};
};

/// "{task}" and so on stand for ids. What deletes comes last, the leaves first.
const MeasuredRoute measured[] = {
    {"GET", "/api/clients"},
    {"GET", "/api/clients?archived=1&name=a"},
    {"GET", "/api/clients/{client}"},
    {"GET", "/api/clients/{client}/projects?archived=1"},
    {"POST", "/api/clients", R"({"name": "New"})"},
    {"PUT", "/api/clients/{client}", R"({"name": "Changed", "isArchived": false})"},
    {"GET", "/api/projects"},
    {"GET", "/api/projects?name=a&clientId={client}"},
    {"GET", "/api/projects/{project}"},
    {"GET", "/api/projects/{project}/tasks?completed=no"},
    {"GET", "/api/projects/{project}/notes"},
    {"GET", "/api/projects/{project}/time-entries"},
    {"POST", "/api/projects", R"({"name": "New", "clientId": "{client}"})"},
    {"PUT", "/api/projects/{otherProject}", R"({"name": "Changed", "clientId": "{client}"})"},
    {"POST", "/api/time-entries/{entry}/stop"},
    {"GET", "/api/tasks"},
    {"GET", "/api/tasks?title=a&completed=no&status=0&priority=1"},
    {"GET", "/api/tasks?tagId={tag}"},
    {"GET", "/api/tasks/{task}"},
    {"GET", "/api/tasks/{task}/time-entries"},
    {"POST", "/api/tasks", R"({"title": "New", "tagIds": ["{tag}"]})"},
    {"PUT", "/api/tasks/{task}", R"({"title": "Changed", "status": 1, "tagIds": ["{tag}"]})"},
    {"POST", "/api/tasks/{task}/complete"},
    {"POST", "/api/tasks/{task}/incomplete"},
    {"POST", "/api/tasks/{task}/tags", R"({"tagIds": ["{tag}"]})"},
    {"GET", "/api/tags"},
    {"GET", "/api/tags/{tag}"},
    {"GET", "/api/tags/{tag}/tasks"},
    {"POST", "/api/tags", R"({"name": "New"})"},
    {"PUT", "/api/tags/{tag}", R"({"name": "Changed"})"},
    {"GET", "/api/time-entries"},
    {"GET", "/api/time-entries?taskId={task}&projectId={project}&running=no"},
    {"GET", "/api/time-entries/{entry}"},
    {"POST", "/api/time-entries", R"({"taskId": "{task}", "projectId": "{project}"})"},
    {"PUT", "/api/time-entries/{entry}", R"({"taskId": "{task}", "projectId": "{otherProject}"})"},
    {"GET", "/api/notes"},
    {"GET", "/api/notes?title=a&search=a&projectId={project}&pinned=no"},
    {"GET", "/api/notes/{note}"},
    {"POST", "/api/notes", R"({"projectId": "{project}"})"},
    {"PUT", "/api/notes/{note}", R"({"title": "Changed", "projectId": "{otherProject}"})"},
    {"POST", "/api/notes/{note}/pin"},
    {"DELETE", "/api/notes/{note}"},
    {"DELETE", "/api/time-entries/{entry}"},
    {"DELETE", "/api/tasks/{task}/tags/{tag}"},
    {"DELETE", "/api/tags/{tag}"},
    {"DELETE", "/api/tasks/{task}"},
    {"DELETE", "/api/projects/{project}"},
    {"DELETE", "/api/clients/{client}"},
};

class StatementTest : public APITest {
  protected:
    /// Statements of each route over a fresh store of so many records of each kind.
    std::map<std::string, std::uint64_t> statementsWith(int count) {
        TestStore fresh;
        serve(*fresh.container);
        start();
        StoreIds ids;
        {
            ModelContext context(*fresh.container, ModelContext::Intent::update);
            ids = crowd(context, count);
        }
        const std::pair<std::string, int> sizes[] = {
            {"clients", count},
            {"projects", count},
            {"tasks", count},
            {"tags", count},
            {"time-entries", 2 * count},
            {"notes", 2 * count},
            {"clients/" + ids["client"] + "/projects", (count + 1) / 2},
            {"projects/" + ids["project"] + "/tasks", (count + 1) / 2},
            {"projects/" + ids["project"] + "/notes", 2 * count},
            {"projects/" + ids["project"] + "/time-entries", 3 * count / 2 + 1},
            {"tags/" + ids["tag"] + "/tasks", count},
            {"tasks/" + ids["task"] + "/time-entries", count + 1},
        };
        for (const auto& [path, size] : sizes)
            EXPECT_EQ(get("/api/" + path).all("id").size(), static_cast<std::size_t>(size)) << path;
        std::map<std::string, std::uint64_t> counts;
        for (const auto& [method, path, body] : measured) {
            const auto before = fresh.container->executedStatements();
            EXPECT_LT(call(method, withIds(path, ids), withIds(body, ids)).status, 300) << method << path;
            counts[method + " " + path] = fresh.container->executedStatements() - before;
        }
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
