#include "MCP/MCPTest.h"
#include "Support/Threads.h"

#include <algorithm>

namespace quillorn {
namespace {

using testing::EndsWith;
using testing::StartsWith;

std::string nested(std::size_t depth) {
    return std::string(depth, '[') + std::string(depth, ']');
}

TEST_F(MCPTest, messagesAreAnsweredOrRefused) {
    const std::string parseError = R"({"error":{"code":-32700,"message":"Parse error"},"jsonrpc":"2.0"})";
    const auto pong = [](const std::string& id) { return R"({"id":)" + id + R"(,"jsonrpc":"2.0","result":{}})"; };
    const auto error = [](int code, const std::string& message) {
        return fmt::format(R"({{"error":{{"code":{},"message":"{}"}},"id":7,"jsonrpc":"2.0"}})", code, message);
    };
    const std::string deepest = R"({"jsonrpc": "2.0", "id": 7, "method": "ping", "params": {"deep": )";
    const struct {
        std::string message, answer;
    } cases[] = {
        {"", parseError},
        {"[]", parseError},
        {R"([{"jsonrpc": "2.0", "id": 7, "method": "ping"}])", parseError},
        {"null", parseError},
        {R"({"jsonrpc": "2.0", "id": 7})", parseError},
        {R"({"id": 7, "method": "ping"})", parseError},
        {R"({"jsonrpc": "2.0", "id": 7, "method": 3})", parseError},
        {R"({"jsonrpc": "2.0", "id": 1.5, "method": "ping"})", parseError},
        {R"({"jsonrpc": "2.0", "id": true, "method": "ping"})", parseError},
        {R"({"jsonrpc": "2.0", "id": 7, "method": "ping", "params": []})", parseError},
        {R"({"jsonrpc": "2.0", "id": 7, "method": "ping"} x)", parseError},
        {"{\"jsonrpc\": \"2.0\", \"id\": 7, \"method\": \"ping\xFF\"}", parseError},
        {deepest + nested(100'000) + "}}", parseError},
        {deepest + nested(500) + "}}", pong("7")},
        {R"({"jsonrpc": "2.0", "id": 7, "method": "ping"})", pong("7")},
        {R"({"jsonrpc": "2.0", "id": "abc", "method": "ping", "params": null, "more": 1})", pong("\"abc\"")},
        {R"({"jsonrpc": "2.0", "id": 1, "id": -9007199254740993, "method": "ping"})", pong("-9007199254740993")},
        {R"({"jsonrpc": "2.0", "id": 7, "method": "initialized"})", pong("7")},
        {R"({"jsonrpc": "2.0", "method": "ping"})", R"({"jsonrpc":"2.0","result":{}})"},
        {R"({"jsonrpc": "2.0", "id": null, "method": "ping"})", R"({"jsonrpc":"2.0","result":{}})"},
        {R"({"jsonrpc": "2.0", "method": "notifications/initialized"})",
         R"({"error":{"code":-32601,"message":"Method not found: notifications/initialized"},"jsonrpc":"2.0"})"},
        {R"({"jsonrpc": "1.0", "id": 7, "method": "ping"})", error(-32600, "Invalid Request")},
        {R"({"jsonrpc": "2.0", "id": 7, "method": "Ping"})", error(-32601, "Method not found: Ping")},
        {R"({"jsonrpc": "2.0", "id": 7, "method": "tools/call"})",
         error(-32602, "Missing 'name' in tools/call params")},
        {R"({"jsonrpc": "2.0", "id": 7, "method": "tools/call", "params": {"name": 1}})",
         error(-32602, "Missing 'name' in tools/call params")},
        {R"({"jsonrpc": "2.0", "id": 7, "method": "resources/read", "params": {}})",
         error(-32602, "Missing 'uri' in resources/read params")},
    };
    for (const auto& [message, answer] : cases)
        EXPECT_EQ(send(message).text(), answer) << message.substr(0, 200);
}

TEST_F(MCPTest, answersArePrettyJsonThatKeepsTheConnection) {
    const HttpResponse response = server.handle(R"({"jsonrpc": "2.0", "id": 1, "method": "ping"})");
    EXPECT_EQ(bodyOf(response), "{\n  \"id\": 1,\n  \"jsonrpc\": \"2.0\",\n  \"result\": {}\n}");
    EXPECT_EQ(response.content().length, static_cast<std::int64_t>(bodyOf(response).size()));
    EXPECT_EQ(response.responseHeaders("1").at("Content-Type"), "application/json");

    const HttpResponse accepted = server.handle(R"({"jsonrpc": "2.0", "method": "initialized"})");
    EXPECT_EQ(accepted.statusCode(), 202);
    EXPECT_EQ(accepted.reasonPhrase(), "Accepted");
    EXPECT_EQ(bodyOf(accepted), "");
}

TEST_F(MCPTest, initializeIntroducesTheServerAndOpensASession) {
    const std::string message =
        R"({"jsonrpc": "2.0", "id": 0, "method": "initialize", "params": {"protocolVersion": 3}})";
    const Json result = member(send(message), "result");
    EXPECT_EQ(member(result, "protocolVersion"), Json("2025-03-26"));
    EXPECT_EQ(member(result, "serverInfo").text(), R"({"name":"Quillorn","version":"1.0.0"})");
    EXPECT_EQ(member(result, "capabilities").text(),
              R"({"resources":{"listChanged":false,"subscribe":false},"tools":{"listChanged":false}})");
    const std::string instructions = *member(result, "instructions").asString();
    EXPECT_THAT(instructions, StartsWith("Quillorn is a project management app for freelancers and solo"));
    EXPECT_THAT(instructions, EndsWith("plan projects, track tasks, log time, and take notes."));

    std::mutex mutex;
    std::set<std::string> sessions;
    onThreads(4, [&](int) {
        for (int i = 0; i < 50; ++i) {
            const std::string session = server.handle(message).responseHeaders("1").at("Mcp-Session-Id");
            const std::lock_guard lock(mutex);
            sessions.insert(session);
        }
    });
    EXPECT_EQ(sessions.size(), 200U);
    EXPECT_TRUE(UUID::parse(*sessions.begin()));
}

TEST_F(MCPTest, theCatalogueHasItsFortyTools) {
    // Each with its parameters by name: "*" for required ones, "=" before a default.
    const std::vector<std::string> expected = {
        "list_clients includeArchived:boolean=false name:string",
        "get_client clientId*:uuid",
        "create_client color:string=\"#007AFF\" description:string icon:string name*:string",
        "update_client clientId*:uuid color:string description:string icon:string isArchived:boolean name:string",
        "list_projects clientId:uuid includeArchived:boolean=false name:string",
        "get_project projectId*:uuid",
        "create_project clientId:uuid color:string description:string name*:string",
        "update_project color:string description:string isArchived:boolean name:string projectId*:uuid",
        "list_tasks completed:boolean includeArchived:boolean=false priority:[0,1,2,3] projectId:uuid status:[0,1,2,3] "
        "tagId:uuid title:string",
        "get_task taskId*:uuid",
        "create_task description:string dueDate:date-time parentTaskId:uuid priority:[0,1,2,3]=1 projectId:uuid "
        "status:[0,1,2,3]=0 title*:string",
        "update_task description:string dueDate:date-time parentTaskId:uuid priority:[0,1,2,3] projectId:uuid "
        "status:[0,1,2,3] taskId*:uuid title:string",
        "complete_task taskId*:uuid",
        "incomplete_task taskId*:uuid",
        "delete_task taskId*:uuid",
        "list_task_comments taskId*:uuid",
        "add_task_comment taskId*:uuid text*:string",
        "delete_task_comment commentId*:uuid",
        "list_subtasks includeCompleted:boolean=false taskId*:uuid",
        "add_subtask description:string dueDate:date-time parentTaskId*:uuid priority:[0,1,2,3]=1 title*:string",
        "convert_to_subtask parentTaskId*:uuid taskId*:uuid",
        "list_time_entries includeArchived:boolean=false projectId:uuid running:boolean taskId:uuid",
        "start_timer notes:string projectId:uuid taskId:uuid",
        "stop_timer timeEntryId*:uuid",
        "log_time endTime*:date-time notes:string projectId:uuid startTime*:date-time taskId:uuid",
        "update_time_entry endTime:date-time notes:string startTime:date-time timeEntryId*:uuid",
        "delete_time_entry timeEntryId*:uuid",
        "search_notes includeArchived:boolean=false pinned:boolean projectId:uuid search:string",
        "get_note noteId*:uuid",
        "create_note content:string projectId:uuid title:string",
        "update_note content:string isPinned:boolean noteId*:uuid projectId:uuid title:string",
        "delete_note noteId*:uuid",
        "toggle_pin_note noteId*:uuid",
        "list_tags name:string",
        "create_tag color:string=\"#007AFF\" name*:string",
        "update_tag color:string name:string tagId*:uuid",
        "delete_tag tagId*:uuid",
        "add_tags_to_task tagIds*:array taskId*:uuid",
        "remove_tag_from_task tagId*:uuid taskId*:uuid",
        "list_tasks_by_tag includeArchived:boolean=false tagId*:uuid",
    };
    std::vector<std::string> found;
    const Json list = member(member(request("tools/list"), "result"), "tools");
    for (const Json& tool : *list.asArray()) {
        std::string line = *member(tool, "name").asString();
        EXPECT_FALSE(member(tool, "description").asString()->empty()) << line;
        const Json schema = member(tool, "inputSchema");
        EXPECT_EQ(member(schema, "type"), Json("object"));
        const Json required = member(schema, "required");
        const Json properties = member(schema, "properties");
        for (const auto& [name, property] : *properties.asObject()) {
            const bool isRequired = required.asArray() && std::ranges::count(*required.asArray(), Json(name)) > 0;
            const Json* format = property.find("format");
            const Json* values = property.find("enum");
            line += " " + name + (isRequired ? "*:" : ":");
            line += values ? values->text() : *(format ? *format : member(property, "type")).asString();
            if (const Json* otherwise = property.find("default"))
                line += "=" + otherwise->text();
            EXPECT_FALSE(member(property, "description").asString()->empty()) << line;
            EXPECT_EQ(property.find("pattern") != nullptr, name == "color") << line;
        }
        EXPECT_NE(required, Json(Json::Array{})) << line;
        found.push_back(line);
    }
    EXPECT_EQ(found, expected);
    EXPECT_EQ(faultOf("delete_client"), "Unknown tool: delete_client");
}

TEST_F(MCPTest, argumentsOfAnyFormNeverHalfChangeAnything) {
    const auto task = add("create_task", R"("title": "Task")");
    const auto note = add("add_task_comment", R"("taskId": "{}", "text": "Comment")", task);
    const auto tag = add("create_tag", R"("name": "Tag")");
    const Json values = Json::parse(fmt::format(
        R"([null, true, 1, 1.5, -1, 1e300, "", "  ", "x", "\u0000", [], [1], [[]], {{}}, {{"a": {{"b": [1]}}}}, {0},
            "{1}", "{2}", "{3}", ["{3}"], "2026-01-31T10:00:00Z"])",
        nested(400), task, note, tag));
    // What is needed beside the parameter that is tried comes first, so that the latter stands.
    const std::string needed = fmt::format(R"("taskId": "{}", "noteId": "{}", "tagId": "{}", "title": "T",
        "name": "N", "text": "C", "parentTaskId": "{}")",
                                           task, note, tag, unknownId);
    const Json list = member(member(request("tools/list"), "result"), "tools");
    for (const Json& tool : *list.asArray()) {
        const std::string name = *member(tool, "name").asString();
        if (name.starts_with("delete_"))
            continue; // they would take the records away
        const Json properties = member(member(tool, "inputSchema"), "properties");
        for (const auto& [parameter, schema] : *properties.asObject())
            for (const Json& value : *values.asArray()) {
                const auto arguments = object(R"({}, "{}": {})", needed, parameter, value.text());
                const auto before = version();
                if (call(name, arguments).isError) {
                    EXPECT_EQ(version(), before) << name << arguments;
                }
            }
    }
    for (const char* arguments : {"[]", "3", "null", "\"x\""}) // all of them: none
        EXPECT_EQ(call("get_task", arguments).text, "taskId is required and must be a valid UUID");
    EXPECT_EQ(foreign.text("PRAGMA integrity_check"), "ok");
    // One emoji of two, joined, behind a long text.
    const std::string title = std::string(200'000, 'x') + "\xF0\x9F\x91\xA9\xE2\x80\x8D\xF0\x9F\x92\xBB";
    const Json::Object stored{{"title", title}, {"description", "Say \"hi\"\n\t\\ \x7F €"}};
    const ToolResult made = call("create_task", Json(stored).text());
    for (const auto& [key, value] : stored)
        EXPECT_EQ(made[key], value);
}

} // namespace
} // namespace quillorn
