#pragma once

#include "MCP/MCPServer.h"
#include "Platform/Calendar.h"
#include "Platform/Text.h"
#include "Support/Answers.h"
#include "Support/FakeClock.h"
#include "Support/TestRecords.h"
#include "Support/TestStore.h"

#include <fmt/format.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace quillorn {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;

inline const std::string unknownId = "00000000-0000-4000-8000-00000000ABCD";

/// A JSON object of these members, which are a pattern of fmt.
template <class... Arguments>
std::string object(fmt::format_string<Arguments...> members, Arguments&&... arguments) {
    return "{" + fmt::format(members, std::forward<Arguments>(arguments)...) + "}";
}

/// What a tool answered.
struct ToolResult {
    bool isError = false;
    std::string text;

    Json json() const { return Json::parse(text); }
    /// A member of the record; null where there is none.
    Json operator[](std::string_view key) const { return member(json(), key); }
    std::string id() const { return *(*this)["id"].asString(); }
    /// The members of that name of a list's records.
    std::vector<Json> all(std::string_view key) const {
        std::vector<Json> values;
        const Json list = json();
        for (const Json& element : *list.asArray())
            values.push_back(member(element, key));
        return values;
    }
    /// Compares members with those of a pattern of fmt; null stands for one that is absent.
    template <class... Arguments>
    void expect(fmt::format_string<Arguments...> members, Arguments&&... arguments) const {
        const Json expected = Json::parse(object(members, std::forward<Arguments>(arguments)...));
        for (const auto& [key, value] : *expected.asObject())
            EXPECT_EQ((*this)[key], value) << key;
    }
};

/// A server over a store of its own, on a Thursday noon in Berlin.
struct MCPTest : testing::Test {
    /// The answer to a message, and its members.
    Json send(const std::string& message) {
        const HttpResponse response = server.handle(message);
        EXPECT_EQ(response.statusCode(), 200) << message;
        return Json::parse(bodyOf(response));
    }
    Json request(const std::string& method, const std::string& params = "{}") {
        return send(object(R"("jsonrpc": "2.0", "id": 1, "method": "{}", "params": {})", method, params));
    }
    ToolResult call(const std::string& tool, const std::string& arguments = "{}") {
        const Json answer = request("tools/call", object(R"("name": "{}", "arguments": {})", tool, arguments));
        const Json result = member(answer, "result");
        const Json content = member(result, "content");
        if (content.asArray() == nullptr || content.asArray()->size() != 1) {
            ADD_FAILURE() << tool << ": " << answer.text();
            return {};
        }
        const Json& item = content.asArray()->front();
        EXPECT_EQ(member(item, "type"), Json("text"));
        return {*member(result, "isError").asBool(), *member(item, "text").asString()};
    }
    /// The same for a call that must succeed; the arguments are a pattern of fmt, without their braces.
    template <class... Arguments>
    ToolResult done(const std::string& tool, fmt::format_string<Arguments...> members, Arguments&&... arguments) {
        const std::string given = object(members, std::forward<Arguments>(arguments)...);
        ToolResult result = call(tool, given);
        EXPECT_FALSE(result.isError) << tool << " " << given << ": " << result.text;
        return result;
    }
    ToolResult done(const std::string& tool) { return done(tool, ""); }
    template <class... Arguments>
    std::string add(const std::string& tool, fmt::format_string<Arguments...> members, Arguments&&... arguments) {
        return done(tool, members, std::forward<Arguments>(arguments)...).id();
    }
    ToolResult ofTask(const std::string& tool, const std::string& id) { return done(tool, R"("taskId": "{}")", id); }
    /// The words of a call that must fail, and that must leave the store alone.
    std::string faultOf(const std::string& tool, const std::string& arguments = "{}") {
        const auto before = version();
        const ToolResult result = call(tool, arguments);
        EXPECT_TRUE(result.isError) << tool << " " << arguments;
        EXPECT_EQ(version(), before) << tool << " " << arguments;
        return result.text;
    }
    /// The document of a resource.
    Json read(const std::string& uri) {
        const Json answer = request("resources/read", object(R"("uri": "{}")", uri));
        const Json contents = member(member(answer, "result"), "contents");
        return Json::parse(*member(contents.asArray()->front(), "text").asString());
    }
    /// Another number after each commit.
    std::int64_t version() { return foreign.integer("PRAGMA data_version"); }

    FakeClock clock;
    TestStore store;
    ForeignConnection foreign{store.file()};
    Text text{"en_US"};
    Calendar calendar{"Europe/Berlin", "en_US"};
    MCPServer server{{*store.container, clock, text, calendar, store.random}};
};

} // namespace quillorn
