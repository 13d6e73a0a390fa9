#include "API/TaskRequests.h"

#include "API/APITest.h"
#include "API/ClientRequests.h"
#include "API/NoteRequests.h"
#include "API/ProjectRequests.h"
#include "API/TagRequests.h"
#include "API/TimeEntryRequests.h"
#include "Models/Project.h"

#include <map>

namespace quillorn {
namespace {

using ::testing::ElementsAre;
using ::testing::ElementsAreArray;
using ::testing::IsEmpty;

const std::string invalidJSON = "400 bad_request Invalid JSON in request body";

/// JSON that no field of this form takes.
std::vector<std::string> wrongValuesFor(const WireShape& shape) {
    std::vector<std::string> values{"{}", "1.5", "1e300", "[1]"};
    if (shape.type == "boolean")
        values.insert(values.end(), {"0", "1", "\"true\""});
    else
        values.emplace_back("true");
    if (shape.type == "array")
        values.insert(values.end(), {"\"x\"", "1", "[null]", "[\"x\"]", "[[]]"});
    else
        values.emplace_back("[]");
    if (shape.type == "integer")
        values.insert(values.end(), {"\"1\"", "9223372036854775808", "-1e19"});
    if (shape.format == "uuid")
        values.insert(values.end(), {"\"\"", "1", "\"2F7C1A34-93D2-4B60-8E0E-5B1E5C9D7A2\"",
                                     "\"{2F7C1A34-93D2-4B60-8E0E-5B1E5C9D7A20}\""});
    if (shape.format == "date-time")
        values.insert(values.end(),
                      {"\"\"", "1", "\"2026-01-02T03:04:05.000Z\"", "\"2026-01-02\"", "\"2026-02-30T00:00:00Z\"",
                       "\"2026-01-02T03:04:05\"", "\"2026-01-02 03:04:05Z\""});
    return values;
}

TEST_F(APITest, aFieldOfTheWrongTypeIsInvalidJSON) {
    start();
    const std::string task = addTask(R"({"title": "Kept"})");
    std::vector<std::tuple<const RecordType*, std::string, std::string>> requests{
        {&CreateTaskRequest::recordType(), "POST", "/api/tasks"},
        {&UpdateTaskRequest::recordType(), "PUT", "/api/tasks/" + task},
        {&TaskTagsRequest::recordType(), "POST", "/api/tasks/" + task + "/tags"},
    };
    const std::tuple<std::string, const RecordType*, const RecordType*> others[] = {
        {"clients", &CreateClientRequest::recordType(), &UpdateClientRequest::recordType()},
        {"projects", &CreateProjectRequest::recordType(), &UpdateProjectRequest::recordType()},
        {"tags", &CreateTagRequest::recordType(), &UpdateTagRequest::recordType()},
        {"time-entries", &CreateTimeEntryRequest::recordType(), &UpdateTimeEntryRequest::recordType()},
        {"notes", &CreateNoteRequest::recordType(), &UpdateNoteRequest::recordType()},
    };
    for (const auto& [resource, create, update] : others) {
        const std::string path = "/api/" + resource;
        const std::string id = add(resource, R"({"name": "Kept"})");
        requests.emplace_back(create, "POST", path);
        requests.emplace_back(update, "PUT", fmt::format("{}/{}", path, id));
    }
    const auto everything = [&] {
        std::string bodies = allTasks();
        for (const auto& [resource, create, update] : others)
            bodies += get("/api/" + resource).body;
        return bodies;
    };
    const std::string before = everything();
    for (const auto& [record, method, path] : requests)
        for (const WireField& field : record->fields) {
            auto values = wrongValuesFor(*field.shape);
            if (field.required)
                values.emplace_back("null");
            for (const std::string& value : values) {
                const std::string needed = field.name == "title" ? R"("name": "New")" : R"("title": "New")";
                const std::string both =
                    field.name == "name" || field.name == "title" ? needed : needed + R"(, "name": "New")";
                const auto body = object(R"("{}": {}, {})", field.name, value, both);
                EXPECT_EQ(code(call(method, path, body)), invalidJSON) << path << " " << body;
            }
        }
    EXPECT_EQ(everything(), before);
}

TEST_F(APITest, aBodyThatIsNoRecordIsInvalidJSON) {
    start();
    const std::string bodies[] = {"",
                                  "{",
                                  "{}",
                                  "[]",
                                  "null",
                                  "\"title\"",
                                  "title=New",
                                  R"({"title": "New"} x)",
                                  R"({"title": "New",})",
                                  R"({"Title": "New"})",
                                  "{\"title\": \"\xFF\"}",
                                  "{\"title\": \"\xED\xA0\x80\"}",
                                  R"({"title": "\ud800"})",
                                  R"({"title": "New", "x": )" + std::string(1'000'000, '['),
                                  R"({"title": "New", "x": )" + std::string(600, '[') + std::string(600, ']') + "}",
                                  std::string(20'000'000, '{')};
    for (const std::string& body : bodies)
        EXPECT_EQ(code(post("/api/tasks", body)), invalidJSON) << body.substr(0, 80);
    EXPECT_EQ(get("/api/tasks").body, "[]");
}

TEST_F(APITest, decodingIsLenientWhereNothingIsLost) {
    start();
    const auto id = addTask(R"({"title": "First", "title": "Last", "unknown": [{}], "priority": 3.0, "status": 1e0,
        "description": null, "tagIds": null, "dueDate": "2026-01-20T19:00:00+02:00"})");
    const Answer task = get("/api/tasks/" + id);
    EXPECT_EQ(task["title"], "Last");
    EXPECT_EQ(task["priority"], 3);
    EXPECT_EQ(task["status"], 1);
    EXPECT_EQ(task["dueDate"], "2026-01-20T17:00:00Z");
    const std::string title = std::string(3'000'000, 'x') + "\\u0000\\u00e9";
    EXPECT_EQ(*post("/api/tasks", R"({"title": ")" + title + "\"}")["title"].asString(),
              std::string(3'000'000, 'x') + std::string("\0\xC3\xA9", 3));
}

struct ValidationCase {
    /// Members beside a valid title, or instead of it.
    std::string body;
    std::vector<std::string> faults{};
};

TEST_F(APITest, everyRuleThatIsBrokenIsListedInOrder) {
    start();
    const auto times = [](int count, const std::string& part) {
        std::string repeated;
        for (int i = 0; i < count; ++i)
            repeated += part;
        return repeated;
    };
    const std::string family = "\U0001F468\u200D\U0001F469\u200D\U0001F467"; // one character
    const std::string titleEmpty = "title cannot be empty";
    const std::string priority = "priority must be 0-3";
    const std::string status = "status must be 0-3";
    const std::string longTitle = "sourceTitle must be at most 200 characters";
    const std::string longURL = "sourceURL must be at most 2048 characters";
    const std::string notAbsolute = "sourceURL must be an absolute URL";
    const auto url = [](const std::string& value) { return R"("sourceURL": ")" + value + "\""; };
    const auto scheme = [](const std::string& name) { return "sourceURL scheme '" + name + "' is not allowed"; };
    const ValidationCase cases[] = {
        {R"("title": "")", {titleEmpty}},
        {R"("title": " \t\u00a0\u3000")", {titleEmpty}},
        {R"("priority": -1)", {priority}},
        {R"("priority": 4)", {priority}},
        {R"("priority": 0)"},
        {R"("status": 3, "priority": 3)"},
        {R"("status": 9223372036854775807)", {status}},
        {R"("status": -1, "priority": 7, "title": "")", {titleEmpty, priority, status}},
        {R"("sourceTitle": ")" + times(200, family) + "\""},
        {R"("sourceTitle": ")" + times(201, family) + "\"", {longTitle}},
        {R"("title": " ", "sourceURL": "x", "sourceTitle": ")" + times(201, "x") + "\"",
         {longTitle, notAbsolute, titleEmpty}},
        {url("")},
        {url("https://x/" + times(2038, "y"))},
        {url("https://x/" + times(2039, "y")), {longURL}},
        {url("javascript:" + times(2048, "y")), {longURL}},
        {url("https://example.com/a?b=[c]&d=%20#e")},
        {url("https://example.com/\u00fc")},
        {url("mailto:somebody@example.com")},
        {url("x-app+1.0:thing")},
        {url("example.com/path"), {notAbsolute}},
        {url("//example.com/path"), {notAbsolute}},
        {url("/a:b"), {notAbsolute}},
        {url(":x"), {notAbsolute}},
        {url("1http://example.com"), {notAbsolute}},
        {url("ht tp://example.com"), {notAbsolute}},
        {url("https://example.com/a b"), {notAbsolute}},
        {url("https://example.com/%zz"), {notAbsolute}},
        {url("https://example.com/<a>"), {notAbsolute}},
        {url("https://example.com:port/"), {notAbsolute}},
        {url("https://exa\\nmple.com/"), {notAbsolute}},
        {url(" javascript:alert(1)"), {notAbsolute}},
        {url("JavaScript:alert(1)"), {scheme("javascript")}},
        {url("FILE:///etc/passwd"), {scheme("file")}},
        {url("data:,x"), {scheme("data")}},
    };
    const std::string task = addTask(R"({"title": "Kept"})");
    for (const ValidationCase& each : cases) {
        const std::string title = each.body.find("\"title\"") == std::string::npos ? R"("title": "New", )" : "";
        const Answer created = post("/api/tasks", "{" + title + each.body + "}");
        const Answer updated = put("/api/tasks/" + task, "{" + each.body + "}");
        EXPECT_EQ(created.status, each.faults.empty() ? 201 : 400) << each.body;
        EXPECT_EQ(updated.status, each.faults.empty() ? 200 : 400) << each.body;
        for (const Answer* answer : {&created, &updated}) {
            EXPECT_THAT(detailsOf(*answer), ElementsAreArray(each.faults)) << each.body;
            if (!each.faults.empty()) {
                EXPECT_EQ(code(*answer), "400 bad_request Validation failed");
            }
        }
    }
}

TEST_F(APITest, theRulesOfTheOtherResources) {
    start();
    struct Case {
        std::string resource, body;
        std::vector<std::string> faults{};
    };
    const std::string name = "name cannot be empty";
    const std::string hash = "color must be a hex string starting with #";
    const std::string hex = "color must be a valid hex color (e.g. #FF3B30)";
    const std::string order = "endTime must be after startTime";
    std::vector<Case> cases{
        {"tags", R"("color": "#FF3B3")", {hex}},
        {"tags", R"("color": "#ff3b30")"},
        {"tags", R"("color": "#FF3B30FF")", {hex}},
        {"tags", R"("color": "#FF3B30\n")", {hex}},
        {"tags", R"("color": "#FF3B3G")", {hex}},
        {"tags", R"("color": "FF3B30#")", {hex}},
        {"tags", R"("color": "")", {hex}},
        {"tags", R"("name": " ", "color": "#")", {name, hex}},
        {"time-entries", R"("startTime": "2026-01-15T10:00:00Z", "endTime": "2026-01-15T09:59:59Z")", {order}},
        {"time-entries", R"("startTime": "2026-01-15T10:00:00Z", "endTime": "2026-01-15T10:00:00Z")"},
        {"time-entries", R"("startTime": "2026-01-15T11:00:00+02:00", "endTime": "2026-01-15T10:00:00Z")"},
        {"time-entries", R"("endTime": "2000-01-01T00:00:00Z")"},
        {"notes", R"("title": " ", "content": "")"},
    };
    for (const char* resource : {"clients", "projects"}) {
        cases.push_back({resource, R"("name": "")", {name}});
        cases.push_back({resource, R"("name": "\u3000 ", "color": "red")", {name, hash}});
        cases.push_back({resource, R"("color": "")", {hash}});
        cases.push_back({resource, R"("color": "#")"});
    }
    std::map<std::string, std::string> kept;
    for (const Case& each : cases) {
        if (!kept.contains(each.resource))
            kept[each.resource] = add(each.resource, R"({"name": "Kept"})");
        const std::string path = "/api/" + each.resource;
        const bool named = each.body.find("\"name\"") != std::string::npos;
        const Answer created = post(path, object("{}{}", named ? "" : R"("name": "New", )", each.body));
        const Answer updated = put(path + "/" + kept[each.resource], object("{}", each.body));
        EXPECT_EQ(created.status, each.faults.empty() ? 201 : 400) << each.resource << each.body;
        EXPECT_EQ(updated.status, each.faults.empty() ? 200 : 400) << each.resource << each.body;
        EXPECT_THAT(detailsOf(created), ElementsAreArray(each.faults)) << each.resource << each.body;
        EXPECT_THAT(detailsOf(updated), ElementsAreArray(each.faults)) << each.resource << each.body;
    }
    for (const char* path : {"/api/clients", "/api/projects", "/api/tags"})
        EXPECT_EQ(code(post(path, "{}")), invalidJSON);
}

TEST_F(APITest, errorsAreWrittenLikeEverythingElse) {
    start();
    EXPECT_EQ(post("/api/tasks", R"({"title": "", "priority": 5})").body, R"({
  "code": 400,
  "details": [
    "title cannot be empty",
    "priority must be 0-3"
  ],
  "error": "bad_request",
  "message": "Validation failed"
})");
    EXPECT_EQ(get("/api/tasks/" + unknownId).body, R"({
  "code": 404,
  "error": "not_found",
  "message": "Task with id 00000000-0000-4000-8000-00000000ABCD not found"
})");
}

TEST_F(APITest, anIdThatIsNoneOrUnknownIsToldForEveryRoute) {
    start();
    struct Resource {
        std::string path, word;
        /// Method, what follows the id, and the body.
        std::vector<std::tuple<std::string, std::string, std::string>> routes;
    };
    const Resource resources[] = {
        {"tasks",
         "Task",
         {{"POST", "/complete", ""},
          {"POST", "/incomplete", ""},
          {"GET", "/time-entries", ""},
          {"POST", "/tags", R"({"tagIds": []})"},
          {"DELETE", "/tags/" + unknownId, ""}}},
        {"clients", "Client", {{"GET", "/projects", ""}}},
        {"projects", "Project", {{"GET", "/tasks", ""}, {"GET", "/notes", ""}, {"GET", "/time-entries", ""}}},
        {"tags", "Tag", {{"GET", "/tasks", ""}}},
        {"time-entries", "TimeEntry", {{"POST", "/stop", ""}}},
        {"notes", "Note", {{"POST", "/pin", ""}}},
    };
    for (const Resource& resource : resources) {
        auto routes = resource.routes;
        routes.insert(routes.end(), {{"GET", "", ""}, {"PUT", "", "{}"}, {"DELETE", "", ""}});
        for (const auto& [method, suffix, content] : routes) {
            const std::string path = "/api/" + resource.path + "/";
            EXPECT_EQ(code(call(method, path + "x%20y" + suffix, content)), "400 bad_request Invalid UUID format: x y");
            EXPECT_EQ(code(call(method, path + "00000000-0000-4000-8000-00000000abcd" + suffix, content)),
                      "404 not_found " + resource.word + " with id " + unknownId + " not found");
        }
    }
    EXPECT_EQ(code(call("DELETE", "/api/tasks/" + unknownId + "/tags/7")), "400 bad_request Invalid UUID format: 7");
    const Answer upper = post("/api/tasks", R"({"title": "A"})");
    std::string lower = *upper["id"].asString();
    for (char& c : lower)
        c = static_cast<char>(std::tolower(c));
    EXPECT_EQ(get("/api/tasks/" + lower).body, upper.body);
}

TEST_F(APITest, aStoreThatFailsIsAnInternalError) {
    start();
    const std::string task = addTask(R"({"title": "A", "tagIds": [")" + addTag("red") + "\"]}");
    inStore([&](ModelContext& context) {
        context.statement("ALTER TABLE Tag RENAME TO Elsewhere")->run();
        return context.insert<Project>(Project::Arguments{"so that there is something to save"}, clock.now()).id();
    });
    for (const Answer& answer : {get("/api/tasks/" + task), get("/api/tasks"),
                                 put("/api/tasks/" + task, R"({"title": "B", "tagIds": [")" + unknownId + "\"]}")}) {
        EXPECT_THAT(code(answer), ::testing::HasSubstr("500 internal_error no such table"));
    }
}

} // namespace
} // namespace quillorn
