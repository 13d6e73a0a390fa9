#include "MCP/MCPTest.h"
#include "Support/CrowdedStore.h"

namespace quillorn {
namespace {

std::vector<std::string> texts(const Json& list, std::string_view key) {
    std::vector<std::string> values;
    for (const Json& element : *list.asArray())
        values.push_back(*member(element, key).asString());
    return values;
}

std::vector<std::string> keysOf(const Json& value) {
    std::vector<std::string> keys;
    for (const auto& [key, ignored] : *value.asObject())
        keys.push_back(key);
    return keys;
}

TEST_F(MCPTest, resourcesAreListed) {
    const Json list = member(member(request("resources/list"), "result"), "resources");
    EXPECT_THAT(texts(list, "uri"), ElementsAre("quillorn://overview", "quillorn://today", "quillorn://overdue",
                                                "quillorn://running-timers", "quillorn://pinned-notes"));
    EXPECT_EQ(texts(list, "description")[3], "Currently active time entries");
    EXPECT_EQ(texts(list, "mimeType")[4], "application/json");
    EXPECT_EQ(member(request("resources/templates/list"), "result").text(),
              R"({"resourceTemplates":[{"description":"Complete project information including tasks, notes, and time )"
              R"(entries","mimeType":"application/json","name":"Project Details",)"
              R"("uriTemplate":"quillorn://project/{projectId}"}]})");
}

TEST_F(MCPTest, unknownResourcesAreRefused) {
    const std::pair<std::string, std::string> cases[] = {
        {"", "Invalid resource URI: "},
        {"file://overview", "Invalid resource URI: file://overview"},
        {"quillorn:/overview", "Invalid resource URI: quillorn:/overview"},
        {"quillorn://", "Resource not found: quillorn://"},
        {"quillorn://Today", "Resource not found: quillorn://Today"},
        {"quillorn://today/", "Resource not found: quillorn://today/"},
        {"quillorn://project/abc", "Resource not found: quillorn://project/abc"},
        {"quillorn://project/" + unknownId, "Resource not found: quillorn://project/" + unknownId},
    };
    for (const auto& [uri, words] : cases) {
        const Json error = member(request("resources/read", object(R"("uri": "{}")", uri)), "error");
        EXPECT_EQ(member(error, "code"), Json(-32002)) << uri;
        EXPECT_EQ(member(error, "message"), Json(words));
    }
}

TEST_F(MCPTest, theDayOfTheUserDecidesWhatIsDue) {
    const std::pair<const char*, const char*> tasks[] = {
        {"long ago", "2020-01-01T00:00:00Z"},     {"yesterday", "2026-01-14T22:59:59Z"},
        {"first second", "2026-01-14T23:00:00Z"}, {"this morning", "2026-01-15T08:00:00Z"},
        {"last second", "2026-01-15T22:59:59Z"},  {"tomorrow", "2026-01-15T23:00:00Z"}};
    for (const auto& [title, due] : tasks)
        done("create_task", R"("title": "{}", "dueDate": "{}")", title, due);
    ofTask("complete_task", add("create_task", R"("title": "done", "dueDate": "2026-01-15T08:00:00Z")"));
    done("create_task", R"("title": "whenever")");
    done("start_timer", R"("notes": "N")");
    const Json today = read("quillorn://today");
    EXPECT_EQ(member(today, "date"), Json("2026-01-15T12:00:00Z"));
    EXPECT_THAT(texts(member(today, "tasksDueToday"), "title"),
                ElementsAre("first second", "this morning", "last second"));
    EXPECT_THAT(texts(member(today, "overdueTasks"), "title"), ElementsAre("long ago", "yesterday"));
    EXPECT_EQ(member(today, "summary").text(), R"({"dueToday":3,"overdue":2,"runningTimers":1})");
    const Json overdue = read("quillorn://overdue");
    EXPECT_THAT(texts(member(overdue, "overdueTasks"), "title"), ElementsAre("long ago", "yesterday"));
    EXPECT_EQ(member(overdue, "count"), Json(2));
    EXPECT_EQ(member(member(overdue, "overdueTasks").asArray()->front(), "completedAt"), Json());
    EXPECT_THAT(keysOf(member(today, "tasksDueToday").asArray()->front()), testing::SizeIs(21)); // none left out
}

TEST_F(MCPTest, timersAndNotesShowWhatTheyAreOn) {
    const auto project = add("create_project", R"("name": "Project")");
    const auto task = add("create_task", R"("title": "Task")");
    done("start_timer", R"("taskId": "{}", "projectId": "{}")", task, project);
    done("log_time", R"("startTime": "2026-01-15T10:00:00Z", "endTime": "2026-01-15T10:30:00Z")");
    clock.advance(65min);
    done("toggle_pin_note", R"("noteId": "{}")", add("create_note", R"("title": "Pinned")"));
    done("create_note");
    const Json running = read("quillorn://running-timers");
    EXPECT_EQ(member(running, "count"), Json(1));
    Json timer = member(running, "runningTimers").asArray()->front();
    EXPECT_TRUE(UUID::parse(*member(timer, "id").asString()));
    timer.asObject()->erase("id");
    EXPECT_EQ(timer.text(), object(R"("duration":3900.0,"durationFormatted":"1h 5m","endTime":null,"notes":null,)"
                                   R"("projectId":"{}","projectName":"Project","startTime":"2026-01-15T12:00:00Z",)"
                                   R"("taskId":"{}","taskTitle":"Task")",
                                   project, task));
    const Json pinned = read("quillorn://pinned-notes");
    EXPECT_THAT(texts(member(pinned, "pinnedNotes"), "title"), ElementsAre("Pinned"));
    EXPECT_EQ(member(pinned, "count"), Json(1));
}

TEST_F(MCPTest, overviewAndProjectAddUp) {
    const auto client = add("create_client", R"("name": "Client")");
    const auto bare = add("create_project", R"("name": "Bare")");
    const auto project = add("create_project", R"("name": "Project", "clientId": "{}")", client);
    const std::string work =
        fmt::format(R"("title": "T", "dueDate": "2026-01-14T12:00:00Z", "projectId": "{}")", project);
    const auto open = add("create_task", "{}", work);
    done("create_task", R"({}, "status": 3)", work);
    done("add_task_comment", R"("taskId": "{}", "text": "C")", open);
    for (const std::string& link :
         {fmt::format(R"("taskId": "{}")", open), fmt::format(R"("projectId": "{}")", project)})
        done("log_time", R"("startTime": "2026-01-15T10:00:00Z", "endTime": "2026-01-15T11:00:30Z", {})", link);
    done("update_project", R"("projectId": "{}", "isArchived": true)", project);

    const Json overview = read("quillorn://overview");
    EXPECT_EQ(
        member(overview, "stats").text(),
        R"({"activeClients":1,"activeProjects":1,"activeTasks":1,"completedTasks":1,"totalClients":1,)"
        R"("totalProjects":2,"totalTasks":2,"totalTimeTrackedFormatted":"2h 1m","totalTimeTrackedSeconds":7260.0})");
    EXPECT_THAT(texts(member(overview, "clients"), "name"), ElementsAre("Client"));
    EXPECT_THAT(texts(member(overview, "projects"), "name"), ElementsAre("Bare", "Project"));

    const Json document = read("quillorn://project/" + project);
    EXPECT_EQ(member(document, "stats").text(),
              R"({"activeTasks":1,"completedTasks":1,"noteCount":1,"overdueTasks":1,"totalTasks":2,)"
              R"("totalTimeFormatted":"2h 1m","totalTimeSeconds":7260.0})");
    EXPECT_EQ(member(document, "client").text(), object(R"("id":"{}","name":"Client")", client));
    EXPECT_EQ(member(member(document, "project"), "id"), Json(project));
    EXPECT_THAT(keysOf(document), ElementsAre("client", "notes", "project", "stats", "tasks", "timeEntries"));
    const Json lone = read("quillorn://project/" + bare);
    EXPECT_EQ(*lone.find("client"), Json());
    EXPECT_EQ(member(lone, "tasks").text(), "[]");
}

TEST_F(MCPTest, everythingTakesAsManyStatementsForManyRowsAsForFew) {
    // What changes records comes last.
    const std::pair<std::string, std::string> calls[] = {
        {"list_clients", R"("name": "a")"},
        {"get_client", R"("clientId": "{client}")"},
        {"list_projects", ""},
        {"get_project", R"("projectId": "{project}")"},
        {"list_tasks", R"("tagId": "{tag}", "title": "a")"},
        {"get_task", R"("taskId": "{task}")"},
        {"list_task_comments", R"("taskId": "{task}")"},
        {"list_subtasks", R"("taskId": "{task}")"},
        {"list_time_entries", R"("projectId": "{project}")"},
        {"search_notes", R"("search": "a")"},
        {"list_tags", ""},
        {"list_tasks_by_tag", R"("tagId": "{tag}")"},
        {"create_task", R"("title": "T", "parentTaskId": "{task}")"},
        {"update_task", R"("taskId": "{task}", "status": 3)"},
        {"add_tags_to_task", R"("taskId": "{task}", "tagIds": ["{tag}"])"},
        {"add_task_comment", R"("taskId": "{task}", "text": "T")"},
        {"start_timer", R"("taskId": "{task}")"},
        {"create_project", R"("name": "P", "clientId": "{client}")"},
        {"delete_tag", R"("tagId": "{tag}")"},
        {"delete_task", R"("taskId": "{task}")"},
    };
    const auto statementsWith = [&](int count) {
        TestStore fresh;
        MCPServer crowded{{*fresh.container, clock, text, calendar, fresh.random}};
        StoreIds ids;
        change(*fresh.container, [&](ModelContext& context) { ids = crowd(context, count); });
        std::map<std::string, std::uint64_t> counts;
        const auto measure = [&](const std::string& name, const std::string& method, const std::string& params) {
            const auto before = fresh.container->executedStatements();
            const std::string answer = bodyOf(crowded.handle(
                object(R"("jsonrpc": "2.0", "id": 1, "method": "{}", "params": {{{}}})", method, params)));
            EXPECT_THAT(answer, testing::Not(testing::ContainsRegex(R"("error"|"isError": true)"))) << name;
            counts[name] = fresh.container->executedStatements() - before;
        };
        for (const std::string uri :
             {"overview", "today", "overdue", "running-timers", "pinned-notes", "project/{project}"})
            measure(uri, "resources/read", R"("uri": "quillorn://)" + withIds(uri, ids) + "\"");
        for (const auto& [tool, arguments] : calls)
            measure(tool, "tools/call",
                    fmt::format(R"("name": "{}", "arguments": {{{}}})", tool, withIds(arguments, ids)));
        return counts;
    };
    const auto few = statementsWith(10);
    for (const auto& [name, count] : statementsWith(1000)) {
        EXPECT_EQ(count, few.at(name)) << name;
        EXPECT_LE(count, 25U) << name;
    }
}

} // namespace
} // namespace quillorn
