#include "AI/ToolExecutor.h"
#include "AI/WorkSummary.h"
#include "Platform/Calendar.h"
#include "Platform/Text.h"
#include "Support/CrowdedStore.h"
#include "Support/FakeClock.h"
#include "Support/TestStore.h"

#include <fmt/core.h>
#include <gmock/gmock.h>

namespace quillorn {
namespace {

using testing::HasSubstr;
using namespace std::chrono_literals;

/// A client with a project, an archived project and one that is nobody's business, on a Thursday noon.
struct ChatTools : testing::Test {
    ChatTools() {
        ModelContext context(*store.container);
        auto& client = make<Client>(context, {.name = "Acme"});
        auto& other = make<Project>(context, {.name = "Secret"});
        auto& archived = make<Project>(context, {.name = "Old"});
        auto& project = make<Project>(context, {.name = "Site", .projectDescription = "Web"});
        archived.setArchived(true);
        archived.setClient(&client);
        project.setClient(&client);
        auto& task = make<ProjectTask>(
            context, {.title = "Build", .dueDate = testNow - 24h, .priority = TaskPriority::high, .project = &project});
        task.setTaskDescription("All of it");
        task.setTags({&make<Tag>(context, {.name = "dev"})});
        auto& subtask = make<ProjectTask>(context, {.title = "Part", .project = &project});
        subtask.setParentTask(&task);
        subtask.setStatus(TaskStatus::done, testNow - 1h);
        make<ProjectTask>(context, {.title = "Alpha", .priority = TaskPriority::high, .project = &archived});
        make<ProjectTask>(context, {.title = "Hidden build", .project = &other});
        make<Note>(context, {.title = "", .content = "Decided on blue", .project = &project, .task = &task});
        make<Note>(context, {.title = "Plan", .content = std::string(300, 'n'), .project = &archived});
        make<Note>(context, {.title = "Secret plan", .project = &other});
        const auto entry = [&](ProjectTask* on, Project* in, std::chrono::hours ago, std::chrono::minutes length) {
            auto& made = make<TimeEntry>(context, {.task = on, .project = in, .startTime = testNow - ago});
            made.setEndTime(made.startTime() + length);
            return made.id().string();
        };
        entry(&task, &project, 5h, 90min); // by both ways, and counts once
        entry(nullptr, &archived, 100h, 60min);
        entry(nullptr, &other, 1h, 600min);
        auto& running = make<TimeEntry>(context, {.task = &task, .startTime = testNow - 1h});
        running.setNotes("now");
        context.save();
        projectChat = ChatContext::of(project);
        clientChat = ChatContext::of(client);
        ids = {{"project", project.id().string()},
               {"other", other.id().string()},
               {"archived", archived.id().string()},
               {"task", task.id().string()},
               {"hidden", ""}};
    }

    std::string call(const ChatContext& chat, const std::string& tool, const std::string& arguments = "") {
        return ToolExecutor({*store.container, clock, calendar, text}, chat).execute(tool, withIds(arguments, ids));
    }
    /// One member of each row.
    std::string all(const ChatContext& chat, const std::string& tool, const std::string& arguments, const char* key) {
        std::string values;
        const Json rows = Json::parse(call(chat, tool, arguments));
        for (const Json& row : *rows.asArray()) {
            const Json* value = row.find(key);
            values += (value == nullptr               ? "-"
                       : value->asString() != nullptr ? *value->asString()
                                                      : value->text()) +
                      "|";
        }
        return values;
    }

    FakeClock clock;
    TestStore store;
    Calendar calendar{"UTC", "en_US"};
    Text text{"en_US"};
    ChatContext projectChat, clientChat;
    StoreIds ids;
};

TEST_F(ChatTools, seeTheirScopeAndObeyWhatMakesSense) {
    struct Case {
        bool isClient;
        const char *tool, *arguments, *key, *expected;
    };
    // clang-format off
    const Case cases[] = {
        {true, "list_projects", "", "name", "Site|"}, {false, "list_projects", "x", "totalTimeHours", "2.5|"},
        {true, "list_projects", "{}", "completedTasks", "1|"}, {true, "list_projects", "{}", "description", "Web|"},
        {false, "list_tasks", "", "title", "Build|"}, {true, "list_tasks", "not json", "title", "Build|Alpha|"}, {true, "list_tasks", "[]", "project", "Site|Old|"},
        {false, "list_tasks", R"({"projectId":"{other}"})", "title", ""}, {true, "list_tasks", R"({"projectId":"{archived}"})", "title", "Alpha|"},
        {true, "list_tasks", R"({"projectId":"nonsense"})", "title", "Build|Alpha|"}, {true, "list_tasks", R"({"status":"DONE"})", "title", "Part|"},
        {true, "list_tasks", R"({"status":"blocked"})", "title", "Build|Alpha|"}, {true, "list_tasks", R"({"status":"in_progress"})", "title", ""},
        {true, "list_tasks", R"({"includeCompleted":"yes"})", "title", "Build|Alpha|Part|"}, {true, "list_tasks", R"({"includeCompleted":2})", "status", "To Do|To Do|Done|"},
        {true, "list_tasks", R"({"includeCompleted":"maybe"})", "title", "Build|Alpha|"}, {true, "list_tasks", R"({"priority":"urgent"})", "title", ""},
        {true, "list_tasks", R"({"search":"BUIL"})", "title", "Build|"}, {true, "list_tasks", R"({"limit":1})", "title", "Build|"},
        {true, "list_tasks", R"({"limit":0})", "title", ""}, {true, "list_tasks", R"({"limit":-9223372036854775808})", "title", ""},
        {true, "list_tasks", R"({"limit":"1"})", "title", "Build|Alpha|"}, {true, "list_tasks", R"({"limit":1e300})", "title", "Build|Alpha|"},
        {false, "list_tasks", "", "isOverdue", "true|"}, {false, "list_tasks", "", "dueDate", "Jan 14, 2026|"}, {false, "list_tasks", "", "timeSpentHours", "2.5|"},
        {false, "list_tasks", "", "subtaskCount", "1|"}, {true, "list_tasks", "", "completedSubtasks", "1|-|"},
        {true, "list_notes", "", "title", "|Plan|"}, {false, "list_notes", "", "preview", "Decided on blue|"}, {true, "list_notes", R"({"search":"decided"})", "project", "Site|"},
        {true, "list_notes", "", "content", "-|-|"}, {true, "list_notes", R"({"withContent":true,"search":"blue"})", "task", "Build|"},
        {true, "list_notes", R"({"since":1768478400})", "title", "|Plan|"}, {true, "list_notes", R"({"since":1768478401})", "title", ""},
        {true, "list_time_entries", "", "duration", "1:00:00|1:30:00|1:00:00|"}, {true, "list_time_entries", "", "notes", "now|-|-|"},
        {true, "list_time_entries", R"({"taskId":"{task}","limit":1})", "date", "Jan 15, 2026, 11:00 AM|"}, {true, "list_time_entries", R"({"projectId":"{archived}"})", "project", "Old|"},
        {false, "list_time_entries", R"({"projectId":"{other}"})", "id", ""},
    };
    // clang-format on
    for (const Case& each : cases)
        EXPECT_EQ(all(each.isClient ? clientChat : projectChat, each.tool, each.arguments, each.key), each.expected)
            << each.tool << " " << each.arguments;
}

TEST_F(ChatTools, answerInTheFormThatWasPromised) {
    // clang-format off
    const std::tuple<bool, const char*, const char*, std::string> cases[] = {
        {true, "drop_tables", "", R"({"error":"Unknown tool: drop_tables"})"},
        {false, "get_task_details", R"({"taskId":5})", R"({"error":"taskId is required and must be a valid UUID"})"},
        {false, "get_note_content", "", R"({"error":"noteId is required and must be a valid UUID"})"},
        {false, "get_task_details", R"({"taskId":"{other}"})", R"({"error":"Task not found"})"}, {true, "get_note_content", R"({"noteId":"{task}"})", R"({"error":"Note not found"})"},
        {true, "get_time_summary", "", R"({"entryCount":3,"projectBreakdown":[{"hours":2.5,"project":"Site"},{"hours":1.0,"project":"Old"}],"taskBreakdown":[{"hours":2.5,"project":"Site","task":"Build"}],"totalHours":3.5,"totalTime":"3h 30m"})"},
        {false, "get_time_summary", R"({"days":0})", R"({"entryCount":0,"projectBreakdown":[],"taskBreakdown":[],"totalHours":0.0,"totalTime":"0h 0m"})"},
        {true, "get_time_summary", R"({"days":-9e18,"since":1e300})", R"({"entryCount":0,"projectBreakdown":[],"taskBreakdown":[],"totalHours":0.0,"totalTime":"0h 0m"})"},
        {true, "get_time_summary", R"({"since":1768460400,"until":1768460400})", R"({"entryCount":1,"projectBreakdown":[{"hours":1.5,"project":"Site"}],"taskBreakdown":[{"hours":1.5,"project":"Site","task":"Build"}],"totalHours":1.5,"totalTime":"1h 30m"})"},
        {true, "get_recent_activity", R"({"until":0})", R"({"completedTasks":[],"days":7,"recentTimeEntries":[]})"},
    };
    // clang-format on
    for (const auto& [isClient, tool, arguments, expected] : cases)
        EXPECT_EQ(call(isClient ? clientChat : projectChat, tool, arguments), expected) << tool << " " << arguments;
    const Json details = Json::parse(call(projectChat, "get_task_details", R"({"taskId":"{task}"})"));
    EXPECT_EQ(details.find("description")->text(), R"("All of it")");
    EXPECT_EQ(details.find("subtasks")->asArray()->size(), 1U);
    EXPECT_THAT(details.find("tags")->text(), HasSubstr(R"("name":"dev")"));
    EXPECT_THAT(details.find("notes")->text(), HasSubstr(R"("preview":"Decided on blue")"));
    EXPECT_EQ(details.find("timeEntries")->asArray()->size(), 2U);
    EXPECT_EQ(details.find("totalTimeHours")->text(), "2.5");
    const std::string recent = call(clientChat, "get_recent_activity", R"({"days":1})");
    EXPECT_THAT(recent, HasSubstr(R"("completedTasks":[{"completedAt":"Jan 15, 2026, 11:00 AM","priority":"Medium",)"
                                  R"("project":"Site","title":"Part"}],"days":1,)"));
    EXPECT_EQ(Json::parse(recent).find("recentTimeEntries")->asArray()->size(), 2U);
    const Json definitions = ToolExecutor::definitions();
    EXPECT_EQ(definitions.asArray()->size(), 8U);
    EXPECT_EQ(
        definitions.asArray()->front().text(),
        R"({"function":{"description":"List active projects with task counts and time totals. Use this to get an )"
        R"(overview of all projects.","name":"list_projects","parameters":{"properties":{},"required":[],)"
        R"("type":"object"}},"type":"function"})");
}

TEST_F(ChatTools, writeNothingAndCostTheSameForMany) {
    const auto costs = [&](int count) {
        TestStore crowded;
        ModelContext context(*crowded.container);
        const StoreIds crowdIds = crowd(context, count);
        ForeignConnection foreign(crowded.file());
        const ToolExecutor tools({*crowded.container, clock, calendar, text},
                                 {ChatContext::Kind::client, UUID::parse(crowdIds.at("client")).value()});
        std::map<std::string, std::uint64_t> statements;
        const auto version = foreign.integer("PRAGMA data_version");
        for (const Json& each : ToolExecutor::definitions()) {
            const std::string name = *each.find("function")->find("name")->asString();
            const auto before = crowded.container->executedStatements();
            const std::string answer = tools.execute(
                name, withIds(R"({"taskId":"{task}","noteId":"{note}","search":"a","limit":500})", crowdIds));
            EXPECT_EQ(answer.find("error"), std::string::npos) << name << answer;
            statements[name] = crowded.container->executedStatements() - before;
        }
        EXPECT_EQ(foreign.integer("PRAGMA data_version"), version);
        return statements;
    };
    EXPECT_EQ(costs(10), costs(300));
}

TEST_F(ChatTools, giveASummaryItsFacts) {
    const ToolExecutor tools({*store.container, clock, calendar, text}, clientChat);
    const DayRange days{date("2026-01-14T10:00:00Z"), date("2026-01-15T00:00:00Z")};
    const std::string request = summaryRequest(tools, "Acme", days, testNow, calendar);
    EXPECT_THAT(request, testing::StartsWith("Client: Acme\nPeriod: Jan 14 – Jan 15\n\nCOMPLETED TASKS (in this "
                                             "period):\n{\"completedTasks\":[{\"completedAt\":\"Jan 15"));
    EXPECT_THAT(request, HasSubstr("\n\nTIME TRACKED (in this period):\n{\"entryCount\":2,"));
    EXPECT_THAT(request, HasSubstr("\n\nACTIVE / IN-PROGRESS TASKS:\n[{"));
    EXPECT_THAT(request, HasSubstr("(full text):\n[{\"content\":\"Decided on blue\""));
    EXPECT_THAT(request, testing::EndsWith("\n\nWrite the summary now."));
    const DayRange quiet{date("2025-12-30T10:00:00Z"), date("2026-01-01T00:00:00Z")};
    EXPECT_THAT(summaryRequest(tools, "Acme", quiet, testNow, calendar),
                testing::AllOf(HasSubstr("Period: Dec 30, 2025 – Jan 1\n"), HasSubstr("\"entryCount\":0")));
}

} // namespace
} // namespace quillorn
