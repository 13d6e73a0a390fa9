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
    std::string title(200'000, 'x');
    title += "\xF0\x9F\x91\xA9\xE2\x80\x8D\xF0\x9F\x92\xBB";
    const Json::Object stored{{"title", title}, {"description", "Say \"hi\"\n\t\\ \x7F €"}};
    const ToolResult made = call("create_task", Json(stored).text());
    for (const auto& [key, value] : stored)
        EXPECT_EQ(made[key], value);
}

} // namespace
} // namespace quillorn
