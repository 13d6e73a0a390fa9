#include "Integration/ProgramTest.h"

#include <fmt/format.h>
#include <gmock/gmock.h>

namespace quillorn {
namespace {

using testing::HasSubstr;
using testing::StartsWith;
namespace fs = std::filesystem;

TEST(MCP, anAgentWorksThroughItsDayWithACommonClient) {
    const fs::path script = fs::path(QUILLORN_NPM_FOLDER) / "mcp-session.js";
    if (!fs::exists(script) || !fs::exists(QUILLORN_NODE))
        GTEST_SKIP() << "the client of the SDK is not installed";
    const TemporaryFolder home;
    const ServerProcess server(home.path());
    ProgramProcess agent(home.path(), {.program = QUILLORN_NODE,
                                       .arguments = {script, fmt::format("http://127.0.0.1:{}/mcp", server.port())}});
    EXPECT_EQ(agent.wait(), 0) << agent.errors();
    EXPECT_EQ(agent.output(), "MCP session passed\n");
}

/// The two surfaces of one server.
struct BothSurfaces : ServerTest {
    Json send(const std::string& message) const { return server.json("POST", "/mcp", message); }
    /// The text that a tool returns; faults begin with "error: ".
    std::string call(const std::string& tool, const std::string& arguments) const {
        const Json answer = send(fmt::format(
            R"({{"jsonrpc": "2.0", "id": 1, "method": "tools/call", "params": {{"name": "{}", "arguments": {}}}}})",
            tool, arguments));
        const Json& result = *answer.find("result");
        const std::string text = *result.find("content")->asArray()->front().find("text")->asString();
        return *result.find("isError")->asBool() ? "error: " + text : text;
    }
    Json record(const std::string& tool, const std::string& arguments) const {
        return Json::parse(call(tool, arguments));
    }
    int status(const std::string& method, const std::string& path, const std::string& body = {}) const {
        return std::stoi(server.request(method, path, body).substr(9));
    }
    static std::string idOf(const Json& record) { return *record.find("id")->asString(); }
};

TEST_F(BothSurfaces, showOneRecordAndDifferWhereTheyShould) {
    const std::string task = idOf(server.json("POST", "/api/tasks", R"({"title": "Task"})"));
    const std::string ofTask = fmt::format(R"("taskId": "{}")", task);
    EXPECT_THAT(server.request("GET", "/api/tasks/" + task), testing::EndsWith(call("get_task", "{" + ofTask + "}")));

    const std::string parent = fmt::format(R"({{"title": "Sub", "parentTaskId": "{}"}})", task);
    EXPECT_EQ(server.json("POST", "/api/tasks", parent).find("parentTaskId"), nullptr);
    EXPECT_EQ(*record("create_task", parent).find("parentTaskId"), Json(task));

    EXPECT_EQ(*server.json("POST", "/api/notes", "{}").find("title"), Json(""));
    EXPECT_EQ(*record("create_note", "{}").find("title"), Json("Untitled Note"));

    const std::string entry = idOf(record("start_timer", "{}"));
    EXPECT_EQ(status("POST", "/api/time-entries/" + entry + "/stop"), 200);
    EXPECT_EQ(status("POST", "/api/time-entries/" + entry + "/stop"), 400);
    EXPECT_THAT(call("stop_timer", fmt::format(R"({{"timeEntryId": "{}"}})", entry)), StartsWith("{"));
}

TEST_F(BothSurfaces, enormousMessagesAreAnswered) {
    EXPECT_THAT(send(std::string(50'000'000, '[')).text(), HasSubstr("-32700"));
    const std::string text(5'000'000, 'x');
    const Json note = record("create_note", R"({"content": ")" + text + "\"}");
    EXPECT_TRUE(*note.find("content") == Json(text));
    EXPECT_TRUE(server.isServing());
}

} // namespace
} // namespace quillorn
