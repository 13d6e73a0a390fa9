#include "Records/TaskRequests.h"

#include "API/APITest.h"
#include "Records/ClientRequests.h"
#include "Records/NoteRequests.h"
#include "Records/ProjectRequests.h"
#include "Records/TagRequests.h"
#include "Records/TimeEntryRequests.h"

namespace quillorn {
namespace {

using RequestTest = RunningAPITest;

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

TEST_F(RequestTest, aFieldOfTheWrongTypeIsInvalidJSON) {
    const std::string kept = R"({"title": "Kept", "name": "Kept"})", task = addTask(kept);
    std::vector<std::tuple<const RecordType*, std::string, std::string>> requests{
        {&TaskTagsRequest::recordType(), "POST", "/api/tasks/" + task + "/tags"}};
    const std::tuple<std::string, const RecordType*, const RecordType*> resources[] = {
        {"tasks", &CreateTaskRequest::recordType(), &UpdateTaskRequest::recordType()},
        {"clients", &CreateClientRequest::recordType(), &UpdateClientRequest::recordType()},
        {"projects", &CreateProjectRequest::recordType(), &UpdateProjectRequest::recordType()},
        {"tags", &CreateTagRequest::recordType(), &UpdateTagRequest::recordType()},
        {"time-entries", &CreateTimeEntryRequest::recordType(), &UpdateTimeEntryRequest::recordType()},
        {"notes", &CreateNoteRequest::recordType(), &UpdateNoteRequest::recordType()},
    };
    for (const auto& [resource, create, update] : resources) {
        requests.emplace_back(create, "POST", "/api/" + resource);
        requests.emplace_back(update, "PUT", "/api/" + resource + "/" + add(resource, kept));
    }
    const std::string before = everything();
    for (const auto& [record, method, path] : requests)
        for (const WireField& field : record->fields) {
            auto values = wrongValuesFor(*field.shape);
            if (field.required)
                values.emplace_back("null");
            for (const std::string& value : values) {
                // What is needed beside the field that is tried.
                Json::Object others{{"title", "New"}, {"name", "New"}};
                others.erase(std::string(field.name));
                const std::string members = Json(others).text();
                const auto body = object(R"("{}": {}, {})", field.name, value, members.substr(1, members.size() - 2));
                EXPECT_EQ(call(method, path, body).fault(), invalidJSON) << path << " " << body;
            }
        }
    EXPECT_EQ(everything(), before);
}

TEST_F(RequestTest, aBodyThatIsNoRecordIsInvalidJSON) {
    const std::string deep(600, '['), begun = R"({"title": "New", "x": )";
    std::vector<std::string> bodies{begun + std::string(1'000'000, '['), begun + deep + std::string(600, ']') + "}",
                                    std::string(20'000'000, '{')};
    for (const char* body :
         {"", "{", "{}", "[]", "null", "\"title\"", "title=New", R"({"title": "New"} x)", R"({"title": "New",})",
          R"({"Title": "New"})", R"({"title": "\ud800"})", "{\"title\": \"\xFF\"}", "{\"title\": \"\xED\xA0\x80\"}"})
        bodies.emplace_back(body);
    for (const std::string& body : bodies)
        EXPECT_EQ(post("/api/tasks", body).fault(), invalidJSON) << body.substr(0, 80);
    for (const char* resource : {"clients", "projects", "tags"})
        EXPECT_EQ(post(fmt::format("/api/{}", resource), "{}").fault(), invalidJSON);
    EXPECT_EQ(get("/api/tasks").body, "[]");
}

TEST_F(RequestTest, decodingIsLenientWhereNothingIsLost) {
    const Answer task =
        post("/api/tasks", R"({"title": "First", "title": "Last", "unknown": [{}], "priority": 3.0, "status": 1e0,
        "description": null, "tagIds": null, "dueDate": "2026-01-20T19:00:00+02:00"})");
    expectMembers(task, R"("title": "Last", "priority": 3, "status": 1, "dueDate": "2026-01-20T17:00:00Z")");
    const std::string title = std::string(3'000'000, 'x') + "\\u0000\\u00e9";
    EXPECT_EQ(*post("/api/tasks", R"({"title": ")" + title + "\"}")["title"].asString(),
              std::string(3'000'000, 'x') + std::string("\0\xC3\xA9", 3));
}

struct Case {
    /// Members beside a valid title or name, or instead of it.
    std::string body;
    std::vector<std::string> faults{};
};

TEST_F(RequestTest, everyRuleThatIsBrokenIsListedInOrder) {
    const auto times = [](int count, const std::string& part) {
        return fmt::format("{}", fmt::join(std::vector<std::string>(static_cast<std::size_t>(count), part), ""));
    };
    const std::string family = "\U0001F468\u200D\U0001F469\u200D\U0001F467"; // one character
    const std::string titleEmpty = "title cannot be empty", name = "name cannot be empty";
    const std::string priority = "priority must be 0-3", status = "status must be 0-3";
    const std::string longTitle = "sourceTitle must be at most 200 characters";
    const std::string longURL = "sourceURL must be at most 2048 characters";
    const std::string notAbsolute = "sourceURL must be an absolute URL";
    const auto url = [](const std::string& value) { return R"("sourceURL": ")" + value + "\""; };
    const auto scheme = [](const std::string& word) { return "sourceURL scheme '" + word + "' is not allowed"; };
    std::vector<Case> tasks{
        {R"("title": "")", {titleEmpty}},
        {R"("title": " \t\u00a0\u3000")", {titleEmpty}},
        {R"("priority": 4)", {priority}},
        {R"("status": 3, "priority": 3)"},
        {R"("status": 9223372036854775807)", {status}},
        {R"("status": -1, "priority": 7, "title": "")", {titleEmpty, priority, status}},
        {R"("sourceTitle": ")" + times(200, family) + "\""},
        {R"("sourceTitle": ")" + times(201, family) + "\"", {longTitle}},
        {R"("title": " ", "sourceURL": "x", "sourceTitle": ")" + times(201, "x") + "\"",
         {longTitle, notAbsolute, titleEmpty}},
        {url("https://x/" + times(2038, "y"))},
        {url("https://x/" + times(2039, "y")), {longURL}},
        {url("javascript:" + times(2048, "y")), {longURL}},
        {url("JavaScript:alert(1)"), {scheme("javascript")}},
        {url("FILE:///etc/passwd"), {scheme("file")}},
    };
    for (const char* good : {"", "https://example.com/a?b=[c]&d=%20#e", "https://example.com/\u00fc",
                             "mailto:somebody@example.com", "x-app+1.0:thing"})
        tasks.push_back({url(good)});
    for (const char* relative :
         {"example.com/path", "//example.com/path", "/a:b", ":x", "1http://example.com", "ht tp://example.com",
          "https://example.com/a b", "https://example.com/%zz", "https://example.com/<a>", "https://example.com:port/",
          "https://exa\\nmple.com/", " javascript:alert(1)"})
        tasks.push_back({url(relative), {notAbsolute}});
    const std::string hash = "color must be a hex string starting with #";
    const std::string hex = "color must be a valid hex color (e.g. #FF3B30)";
    const std::vector<Case> named{
        {R"("name": "")", {name}},
        {R"("name": "\u3000 ", "color": "red")", {name, hash}},
        {R"("color": "")", {hash}},
        {R"("color": "#")"},
    };
    const std::vector<Case> tags{
        {R"("color": "#FF3B3")", {hex}},    {R"("color": "#ff3b30")"},
        {R"("color": "#FF3B30FF")", {hex}}, {R"("color": "#FF3B30\n")", {hex}},
        {R"("color": "#FF3B3G")", {hex}},   {R"("color": "FF3B30#")", {hex}},
        {R"("color": "")", {hex}},          {R"("name": " ", "color": "#")", {name, hex}},
    };
    const std::vector<Case> timeEntries{
        {R"("startTime": "2026-01-15T10:00:00Z", "endTime": "2026-01-15T09:59:59Z")",
         {"endTime must be after startTime"}},
        {R"("startTime": "2026-01-15T10:00:00Z", "endTime": "2026-01-15T10:00:00Z")"},
        {R"("startTime": "2026-01-15T11:00:00+02:00", "endTime": "2026-01-15T10:00:00Z")"},
        {R"("endTime": "2000-01-01T00:00:00Z")"},
    };
    const std::map<std::string, std::vector<Case>> resources{{"tasks", tasks},
                                                             {"clients", named},
                                                             {"projects", named},
                                                             {"tags", tags},
                                                             {"time-entries", timeEntries},
                                                             {"notes", {{R"("title": " ", "content": "")"}}}};
    for (const auto& [resource, cases] : resources) {
        const std::string path = "/api/" + resource;
        const std::string kept = path + "/" + add(resource, R"({"title": "Kept", "name": "Kept"})");
        for (const auto& [body, faults] : cases) {
            const Answer created = post(path, object(R"("title": "New", "name": "New", {})", body));
            const Answer updated = put(kept, object("{}", body));
            EXPECT_EQ(created.status, faults.empty() ? 201 : 400) << path << body;
            EXPECT_EQ(updated.status, faults.empty() ? 200 : 400) << path << body;
            for (const Answer* answer : {&created, &updated}) {
                EXPECT_THAT(answer->details(), ElementsAreArray(faults)) << path << body;
                if (!faults.empty()) {
                    EXPECT_EQ(answer->fault(), "400 bad_request Validation failed");
                }
            }
        }
    }
}

TEST_F(RequestTest, anIdThatIsNoneOrUnknownIsToldForEveryRoute) {
    struct Route {
        std::string method, suffix, body{};
    };
    const std::tuple<std::string, std::string, std::vector<Route>> resources[] = {
        {"tasks", "Task", {{"POST", "/complete"}, {"POST", "/incomplete"}, {"GET", "/time-entries"}}},
        {"tasks", "Task", {{"POST", "/tags", R"({"tagIds": []})"}, {"DELETE", "/tags/" + unknownId}}},
        {"clients", "Client", {{"GET", "/projects"}}},
        {"projects", "Project", {{"GET", "/tasks"}, {"GET", "/notes"}, {"GET", "/time-entries"}}},
        {"tags", "Tag", {{"GET", "/tasks"}}},
        {"time-entries", "TimeEntry", {{"POST", "/stop"}}},
        {"notes", "Note", {{"POST", "/pin"}}},
    };
    for (auto [resource, word, routes] : resources) {
        routes.insert(routes.end(), {{"GET", ""}, {"PUT", "", "{}"}, {"DELETE", ""}});
        for (const auto& [method, suffix, content] : routes) {
            const std::string path = "/api/" + resource + "/";
            EXPECT_EQ(call(method, path + "x%20y" + suffix, content).fault(),
                      "400 bad_request Invalid UUID format: x y");
            EXPECT_EQ(call(method, path + "00000000-0000-4000-8000-00000000abcd" + suffix, content).fault(),
                      "404 not_found " + word + " with id " + unknownId + " not found");
        }
    }
    EXPECT_EQ(call("DELETE", "/api/tasks/" + unknownId + "/tags/7").fault(), "400 bad_request Invalid UUID format: 7");
    const Answer upper = post("/api/tasks", R"({"title": "A"})");
    std::string lower = *upper["id"].asString();
    for (char& c : lower)
        c = static_cast<char>(std::tolower(c));
    EXPECT_EQ(get("/api/tasks/" + lower).body, upper.body);
}

TEST_F(RequestTest, aStoreThatFailsIsAnInternalError) {
    const std::string task = addTask(R"({"title": "A", "tagIds": [")" + addTag("red") + "\"]}");
    ForeignConnection(store.file()).execute("ALTER TABLE Tag RENAME TO Elsewhere");
    for (const Answer& answer : {get("/api/tasks/" + task), get("/api/tasks"),
                                 put("/api/tasks/" + task, R"({"title": "B", "tagIds": [")" + unknownId + "\"]}")}) {
        EXPECT_THAT(answer.fault(), HasSubstr("500 internal_error no such table"));
    }
}

} // namespace
} // namespace quillorn
