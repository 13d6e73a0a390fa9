#include "API/APITest.h"
#include "Models/Note.h"
#include "Models/ProjectTask.h"

namespace quillorn {
namespace {

using namespace std::chrono_literals;
using ::testing::ElementsAre;
using ::testing::ElementsAreArray;
using ::testing::HasSubstr;

/// Time entries, notes and tags by the API.
class TimeNoteTagTest : public APITest {
  protected:
    TimeNoteTagTest() { start(); }

    struct Update {
        std::string body;
        Json::Object changes;
    };
    /// Sends each update and compares the whole answer; null takes a member away.
    void expectUpdates(const std::string& path, const std::vector<Update>& updates, bool isDated) {
        Json::Object expected = *get(path).json().asObject();
        for (const Update& each : updates) {
            clock.advance(1min);
            if (isDated)
                expected["updatedAt"] = formatISO8601(clock.now());
            for (const auto& [key, value] : each.changes)
                expected[key] = value;
            const Answer answer = put(path, each.body);
            EXPECT_EQ(answer.status, 200);
            EXPECT_EQ(answer.json(), Json(expected)) << each.body;
            EXPECT_EQ(get(path).body, answer.body);
        }
    }
    void expectLists(const std::string& path, const char* key,
                     const std::vector<std::pair<std::string, std::vector<std::string>>>& cases) const {
        for (const auto& [query, values] : cases)
            EXPECT_THAT(get(path + query).all(key), ElementsAreArray(values.begin(), values.end())) << query;
    }
};

TEST_F(TimeNoteTagTest, anEmptyObjectStartsAnEntryOfNobody) {
    const Answer answer = post("/api/time-entries", "{}");
    EXPECT_EQ(answer.status, 201);
    EXPECT_EQ(answer.json(), Json(Json::Object{{"id", answer["id"]},
                                               {"startTime", "2026-01-15T12:00:00Z"},
                                               {"duration", 0.0},
                                               {"isRunning", true},
                                               {"displayName", "Unassigned"}}));
    const std::string path = "/api/time-entries/" + *answer["id"].asString();
    clock.advance(90s);
    EXPECT_EQ(get(path)["duration"], 90.0);
    const Answer stopped = post(path + "/stop");
    EXPECT_EQ(stopped.status, 200);
    EXPECT_EQ(stopped["endTime"], "2026-01-15T12:01:30Z");
    EXPECT_EQ(stopped["isRunning"], false);
    clock.advance(1min);
    const Answer again = post(path + "/stop");
    EXPECT_EQ(code(again), "400 bad_request Time entry is not running");
    EXPECT_EQ(again["details"], Json());
    EXPECT_EQ(get(path).body, stopped.body);
    const Answer point =
        post("/api/time-entries", R"({"startTime": "2026-01-15T10:00:00Z", "endTime": "2026-01-15T10:00:00Z"})");
    EXPECT_EQ(point["duration"], 0.0);
    EXPECT_EQ(point["isRunning"], false);
}

TEST_F(TimeNoteTagTest, anEntryTakesWhatAnUpdateNames) {
    const auto project = addProject("P"), task = addTask(R"({"title": "T"})");
    const auto entry = add("time-entries", R"({"startTime": "2026-01-15T10:00:00Z", "notes": "N",
        "endTime": "2026-01-15T11:00:00Z"})");
    expectUpdates(
        "/api/time-entries/" + entry,
        {{"{}", {}},
         {R"({"startTime": null, "endTime": null, "notes": null, "taskId": null, "projectId": null, "title": "X"})",
          {}},
         {R"({"notes": ""})", {{"notes", ""}}},
         {R"({"startTime": "2026-01-15T10:30:00Z"})", {{"startTime", "2026-01-15T10:30:00Z"}, {"duration", 1800.0}}},
         // The rule is about what one request says.
         {R"({"endTime": "2026-01-15T10:00:00Z"})", {{"endTime", "2026-01-15T10:00:00Z"}, {"duration", -1800.0}}},
         {object(R"("projectId": "{}")", project), {{"projectId", project}, {"displayName", "P (General)"}}},
         {object(R"("taskId": "{}")", task), {{"taskId", task}, {"displayName", "T"}}}},
        false);
    EXPECT_EQ(call("DELETE", "/api/time-entries/" + entry).status, 204);
    EXPECT_EQ(get("/api/time-entries").body, "[]");
    EXPECT_EQ(get("/api/tasks/" + task).status, 200);
}

TEST_F(TimeNoteTagTest, missingLinksLeaveNothingBehind) {
    const auto entry = add("time-entries", "{}"), note = add("notes", "{}"), task = addTask(R"({"title": "T"})");
    const auto lists = [&] { return get("/api/time-entries").body + get("/api/notes").body; };
    const std::string before = lists();
    const std::string link = object(R"("notes": "X", "title": "X", "projectId": "{}")", unknownId);
    const std::string both = object(R"("taskId": "{0}", "projectId": "{0}")", unknownId);
    const std::string half = object(R"("taskId": "{}", "projectId": "{}")", task, unknownId);
    const std::tuple<std::string, std::string, std::string> cases[] = {{"time-entries", link, "Project"},
                                                                       {"time-entries", both, "Task"},
                                                                       {"time-entries", half, "Project"},
                                                                       {"notes", link, "Project"}};
    for (const auto& [resource, body, word] : cases) {
        const std::string path = "/api/" + resource;
        const std::string id = resource == "notes" ? note : entry;
        for (const Answer& answer : {post(path, body), put(path + "/" + id, body)})
            EXPECT_EQ(code(answer), "404 not_found " + word + " with id " + unknownId + " not found");
        EXPECT_THAT(code(put(path + "/" + unknownId, body)), HasSubstr(resource == "notes" ? "Note" : "TimeEntry"));
    }
    EXPECT_EQ(lists(), before);
}

TEST_F(TimeNoteTagTest, entriesAreFilteredAndComeLatestFirst) {
    const auto active = addProject("Active"), archived = addProject("A", true),
               ofArchived = addProject("C", false, true);
    const auto addEntry = [&](const char* name, int minute, const std::string& more) {
        return add("time-entries",
                   object(R"("notes": "{}", "startTime": "2026-01-15T10:{:02}:00Z"{})", name, minute, more));
    };
    const auto taskOf = [&](const std::string& project) {
        return object(R"("title": "T", "projectId": "{}")", project);
    };
    const auto link = [](const char* key, const std::string& id) { return fmt::format(R"(, "{}": "{}")", key, id); };
    const auto task = addTask(taskOf(active)), hidden = addTask(taskOf(archived)), away = addTask(taskOf(ofArchived));
    addEntry("free", 1, "");
    addEntry("task", 5, link("taskId", task) + R"(, "endTime": "2026-01-15T11:00:00Z")");
    addEntry("project", 3, link("projectId", active));
    addEntry("hidden task", 2, link("taskId", hidden));
    addEntry("away task", 6, link("taskId", away));
    addEntry("hidden", 4, link("projectId", archived));
    addEntry("away", 7, link("projectId", ofArchived));
    addEntry("both", 8, link("taskId", task) + link("projectId", archived)); // one hidden link hides it
    const std::vector<std::string> visible{"task", "project", "free"};
    expectLists("/api/time-entries", "notes",
                {{"", visible},
                 {"?archived=no", visible},
                 {"?archived=yes", {"both", "away", "away task", "task", "hidden", "project", "hidden task", "free"}},
                 {"?taskId=" + task, {"task"}},
                 {"?taskId=" + task + "&archived=1", {"both", "task"}},
                 {"?taskId=" + hidden, {}},
                 {"?taskId=garbage", visible},
                 {"?taskId=" + unknownId, {}},
                 {"?projectId=" + active, {"task", "project"}},
                 {"?projectId=" + archived + "&archived=1", {"both", "hidden", "hidden task"}},
                 {"?projectId=garbage", visible},
                 {"?running=true", {"project", "free"}},
                 {"?running=no", {"task"}},
                 {"?running=", {"task"}},
                 {"?running=1&projectId=" + active, {"project"}}});
}

TEST_F(TimeNoteTagTest, notesAreWrittenChangedAndPinned) {
    const Answer answer = post("/api/notes", "{}");
    EXPECT_EQ(answer.status, 201);
    EXPECT_EQ(answer.json(), Json(Json::Object{{"id", answer["id"]},
                                               {"title", ""},
                                               {"content", ""},
                                               {"createdAt", "2026-01-15T12:00:00Z"},
                                               {"updatedAt", "2026-01-15T12:00:00Z"},
                                               {"isPinned", false},
                                               {"preview", ""}}));
    const std::string path = "/api/notes/" + *answer["id"].asString();
    const auto project = addProject("P"), other = addProject("Other");
    const std::string longText(251, 'x');
    expectUpdates(
        path,
        {{"{}", {}},
         {R"({"title": null, "content": null, "isPinned": null, "projectId": null})", {}},
         {R"({"title": "T", "isPinned": true})", {{"title", "T"}, {"isPinned", true}}},
         {R"({"content": " a\nb "})", {{"content", " a\nb "}, {"preview", "a b"}}},
         {object(R"("content": "{}")", longText), {{"content", longText}, {"preview", longText.substr(1) + "..."}}},
         {object(R"("projectId": "{}")", project), {{"projectId", project}}},
         {object(R"("projectId": "{}", "isPinned": false, "title": "")", other),
          {{"projectId", other}, {"isPinned", false}, {"title", ""}}}},
        true);
    for (const bool pinned : {true, false, true}) {
        clock.advance(1min);
        const Answer toggled = post(path + "/pin");
        EXPECT_EQ(toggled.status, 200);
        EXPECT_EQ(toggled["isPinned"], pinned);
        EXPECT_EQ(get(path).body, toggled.body);
    }
    EXPECT_EQ(call("DELETE", path).status, 204);
    EXPECT_EQ(get("/api/notes").body, "[]");
    EXPECT_EQ(get("/api/projects/" + other).status, 200);
}

TEST_F(TimeNoteTagTest, notesAreFilteredAndWhatChangedLastComesFirst) {
    const auto active = addProject("Active"), archived = addProject("A", true),
               ofArchived = addProject("C", false, true);
    const auto addNote = [&](const char* title, const char* content, const std::string& project = "") {
        clock.advance(1min);
        return add("notes", object(R"("title": "{}", "content": "{}", "projectId": {})", title, content,
                                   project.empty() ? "null" : "\"" + project + "\""));
    };
    const auto first = addNote("Call", "about bread");
    addNote("Café", "BREAD and butter", active);
    addNote("In archive", "", archived);
    addNote("At client", "", ofArchived);
    const auto pinned = addNote("Pinned call", "");
    post("/api/notes/" + pinned + "/pin");
    const auto task = addTask(object(R"("title": "T", "projectId": "{}")", archived));
    inStore([&](ModelContext& context) { // a comment; only its task says that it is hidden
        auto* owner = context.find<ProjectTask>(*UUID::parse(task));
        return context.insert<Note>(Note::Arguments{.title = "Comment", .task = owner}, clock.now()).id();
    });
    clock.advance(1min);
    put("/api/notes/" + first, "{}");
    const std::vector<std::string> visible{"Call", "Pinned call", "Café"};
    expectLists("/api/notes", "title",
                {{"", visible},
                 {"?archived=1", {"Call", "Pinned call", "Comment", "At client", "In archive", "Café"}},
                 {"?title=CALL", {"Call", "Pinned call"}},
                 {"?title=bread", {}},
                 {"?title=", {}},
                 {"?search=bread", {"Call", "Café"}},
                 {"?search=call", {"Call", "Pinned call"}},
                 {"?search=caf\xE9&title=CAF\xC9", {"Café"}},
                 {"?search=", {}},
                 {"?projectId=" + active, {"Café"}},
                 {"?projectId=" + archived, {}},
                 {"?projectId=" + archived + "&archived=true", {"In archive"}},
                 {"?projectId=garbage", visible},
                 {"?pinned=yes", {"Pinned call"}},
                 {"?pinned=no&search=b", {"Call", "Café"}}});
}

TEST_F(TimeNoteTagTest, tagsAreListedByNameWithTheirTasks) {
    const Answer answer = post("/api/tags", R"({"name": "b"})");
    EXPECT_EQ(answer.status, 201);
    EXPECT_EQ(answer.json(), Json(Json::Object{{"id", answer["id"]},
                                               {"name", "b"},
                                               {"color", "#007AFF"},
                                               {"taskCount", 0},
                                               {"createdAt", "2026-01-15T12:00:00Z"},
                                               {"updatedAt", "2026-01-15T12:00:00Z"}}));
    const std::string tag = *answer["id"].asString();
    add("tags", R"({"name": "b", "color": "#ff3b30"})"); // names may repeat
    add("tags", R"({"name": "A"})");
    const auto archived = addProject("Archived", true);
    const auto tagged = [&](const char* title, const std::string& more) {
        return addTask(object(R"("title": "{}", "tagIds": ["{}"]{})", title, tag, more));
    };
    const auto task = tagged("one", "");
    tagged("two", R"(, "status": 3)");
    tagged("three", fmt::format(R"(, "projectId": "{}")", archived));
    EXPECT_THAT(get("/api/tags").all("name"), ElementsAre("A", "b", "b"));
    EXPECT_EQ(get("/api/tags/" + tag)["taskCount"], 3);
    EXPECT_THAT(get("/api/tags/" + tag + "/tasks").all("title"), ElementsAre("one", "two", "three"));
    expectUpdates("/api/tags/" + tag,
                  {{"{}", {}},
                   {R"({"name": null, "color": null})", {}},
                   {R"({"name": "c"})", {{"name", "c"}}},
                   {R"({"color": "#Ff9500"})", {{"color", "#Ff9500"}}}},
                  true);
    EXPECT_EQ(call("DELETE", "/api/tags/" + tag).status, 204);
    EXPECT_THAT(get("/api/tags").all("name"), ElementsAre("A", "b"));
    EXPECT_EQ(get("/api/tasks/" + task)["tags"], Json(Json::Array{}));
}

} // namespace
} // namespace quillorn
