#include "AI/AIService.h"

#include "AI/AIServiceError.h"
#include "Platform/HttpClient.h"
#include "Platform/RunLoop.h"
#include "Support/MemorySettings.h"
#include "Support/RecordingLog.h"
#include "Support/ScopedEnvironment.h"
#include "Support/ScriptedServer.h"

#include <fmt/core.h>
#include <gmock/gmock.h>

namespace quillorn {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Key;
using testing::Not;
using testing::StartsWith;
using namespace std::chrono_literals;
using Server = ScriptedServer;

struct AIServices : testing::Test {
    AIServices() {
        settings.set("aiEndpoint", server.url() + "/v1");
        settings.set("aiModel", "m");
    }

    /// What `work` brings, or the words of its failure.
    template <typename Work>
    std::string outcome(Work work) {
        std::string result;
        TaskScope scope;
        auto run = [](AIServices& test, Work function, std::string& into) -> Task<> {
            try {
                into = co_await function();
            } catch (const std::exception& error) {
                into = fmt::format("! {}", error.what());
            }
            test.loop.stop();
        };
        scope.start(run(*this, std::move(work), result));
        loop.run();
        return result;
    }

    template <typename Piece>
    static Task<std::string> gather(AnswerStream<Piece> stream, std::string (*show)(const Piece&)) {
        std::string all;
        for (auto piece = co_await stream.next(); piece; piece = co_await stream.next())
            all += show(*piece) + "|";
        co_return all;
    }
    static std::string showText(const std::string& text) { return text; }
    static std::string showEvent(const StreamEvent& event) {
        if (const auto* text = std::get_if<TextDelta>(&event))
            return text->text;
        if (const auto* call = std::get_if<ToolCallDelta>(&event))
            return call->argumentsChunk.value_or("-");
        return std::get<Finished>(event).reason == FinishReason::stop ? "stop" : "toolCalls";
    }
    std::string texts(const Json::Array& messages = {}) {
        return outcome([&] { return gather(service.streamChat(messages), &showText); });
    }
    std::string events(const Json::Array& tools = {}) {
        return outcome([&] { return gather(service.streamChatWithTools({}, tools), &showEvent); });
    }
    std::string whole() {
        return outcome([&] { return service.completeChat({}, 30s); });
    }
    std::string models() {
        return outcome([&] { return listed(service); });
    }
    static Task<std::string> listed(AIService& service) {
        const auto ids = co_await service.fetchModels();
        std::string all;
        for (const std::string& id : ids)
            all += id + ",";
        co_return all;
    }
    std::string connection() {
        return outcome([&] { return service.testConnection(); });
    }

    ScopedEnvironment noProxy{"no_proxy", "127.0.0.1"};
    MemorySettings settings;
    Server server;
    RecordingLog log;
    RunLoop loop{log};
    HttpClient client{loop};
    AIService service{client, settings};
};

TEST_F(AIServices, askAsTheSettingsSay) {
    server.standBy(chat::stream({chat::text("a"), chat::done}));
    const Json::Array messages{Json::Object{{"role", "user"}, {"content", "Hi \u00e9"}}};
    EXPECT_EQ(texts(messages), "a|");
    settings.set("aiApiKey", " k ");
    settings.set("aiReasoningEffort", "xhigh");
    EXPECT_EQ(events({Json::Object{{"type", "function"}}}), "a|stop|");
    EXPECT_EQ(whole(), "! Invalid response from server");
    EXPECT_EQ(connection(), "Connected successfully");
    const auto requests = server.requests();
    EXPECT_EQ(requests[0].path, "/v1/chat/completions");
    EXPECT_EQ(requests[0].body, R"({"messages":[{"content":"Hi é","role":"user"}],"model":"m","stream":true})");
    EXPECT_THAT(requests[0].headers, Not(Contains(Key("authorization"))));
    EXPECT_EQ(requests[1].body, R"({"messages":[],"model":"m","reasoning_effort":"xhigh","stream":true,)"
                                R"("tools":[{"type":"function"}]})");
    EXPECT_EQ(requests[2].body, R"({"messages":[],"model":"m","reasoning_effort":"xhigh","stream":false})");
    EXPECT_EQ(requests[3].method + " " + requests[3].path, "GET /v1/models");
    for (const int with : {1, 2, 3}) // the server's parser drops blanks at the ends
        EXPECT_THAT(requests[static_cast<std::size_t>(with)].headers.at("authorization"), StartsWith("Bearer"));
    settings.set("aiEndpoint", server.url() + "/v1/");
    (void)connection();
    EXPECT_EQ(server.requests().back().path, "/v1//models");
}

TEST_F(AIServices, streamWhateverTheServerSends) {
    const std::string call = chat::call(0, "a", "n", "{}");
    const std::string asked = chat::finish("tool_calls");
    struct Case {
        Server::Script script;
        std::string texts, events;
    };
    const std::string bytewise = ": hi\r\nevent: x\r\n" + chat::text("é") + call + "data: {\n" + asked + chat::done;
    const std::string cutShort = Server::answer(200, chat::text("a") + "data: {", "Content-Length: 9999\r\n");
    const std::string longError(2'000, 'e');
    const std::string odd = R"(data: {"choices":[{"delta":{"content":"no"}},1]}
data: {"choices":[{"delta":{"content":"no","content":["no"]}}]}
data: {"choices":[{"delta":{"content":"no"}}],"choices":[{"delta":{"content":"a"}},{"delta":{"content":"no"}}]}
data: {"choices":[{"delta":{"content":"b","tool_calls":[{"function":{"arguments":"no"}},[{"id":"no"}]]}}]}
data: {"choices":[{"delta":{"tool_calls":[{"function":{"arguments":"no"},"function":{"arguments":"c"}}]}}]}
data: {"choices":[{"delta":{"content":"no"}}],"id":"\udc00"}
)";
    // clang-format off
    const Case cases[] = {
        {{Server::Bytewise{Server::answer(200, bytewise)}}, "é|", "é|{}|toolCalls|"},
        {chat::stream({chat::text("a"), chat::text(""), chat::text("b")}), "a||b|", "a||b|stop|"},
        {chat::stream({odd}), "a|b|", "a|b|c|stop|"},
        {chat::stream({}), "", "stop|"}, {{Server::answer(200, chat::text("a") + chat::done), Server::Silence{}}, "a|", "a|stop|"},
        {chat::stream({chat::text("a"), "data: \xFF\n", chat::text("b")}), "a|b|", "a|b|stop|"},
        {{Server::answer(204, "x")}, "! HTTP error 204", "! HTTP error 204"}, {{Server::answer(500, "no\nway\xFF")}, "! HTTP error 500: noway\uFFFD", "! HTTP error 500: noway\uFFFD"},
        {{Server::answer(401, longError)}, "! HTTP error 401: " + longError.substr(0, 200), "! HTTP error 401: " + longError.substr(0, 200)},
        {{"hello\r\n\r\n"}, "! Invalid response from server", "! Invalid response from server"},
        {{cutShort}, "! transfer closed", "! transfer closed"}, {{cutShort, Server::Reset{}}, "! ", "! "},
    };
    // clang-format on
    for (const Case& each : cases) {
        server.expect(each.script);
        EXPECT_THAT(texts(), StartsWith(each.texts));
        server.expect(each.script);
        EXPECT_THAT(events(), StartsWith(each.events));
        EXPECT_FALSE(service.isStreaming());
    }
    std::string many;
    for (const std::string delta = chat::text("x"); many.size() < 100'000 * delta.size();)
        many += delta;
    server.expect({Server::answer(200, many)});
    EXPECT_EQ(texts().size(), 200'000U);
}

TEST_F(AIServices, keepAsMuchOfAnErrorAsIsEnough) {
    std::string lines;
    for (int i = 0; i < 100; ++i)
        lines += std::string(99, 'a') + "\n";
    server.expect({Server::answer(400, lines), Server::Silence{}});
    std::string message;
    (void)outcome([&] {
        return [](AIService& asked, std::string& into) -> Task<std::string> {
            const auto stream = asked.streamChat({});
            try {
                (void)co_await stream.next();
            } catch (const AIServiceError& error) {
                into = error.message();
            }
            co_return "";
        }(service, message);
    });
    EXPECT_EQ(message, std::string(6 * 99, 'a'));
}

TEST_F(AIServices, readWholeAnswersAndLists) {
    struct Case {
        int status;
        std::string body;
        const char *whole, *models, *connection;
    };
    const char* const invalid = "! Invalid response from server";
    // clang-format off
    const Case cases[] = {
        {200, R"({"choices":[{"message":{"content":" text \n"}}]})", " text \n", invalid, "Connected successfully"},
        {200, R"({"choices":[{"message":{"content":null}}]})", invalid, invalid, "Connected successfully"},
        {200, R"({"choices":[]})", invalid, invalid, "Connected successfully"}, {200, R"({"choices":[1]})", invalid, invalid, "Connected successfully"},
        {200, R"({"data":[{"id":"b"},{"id":1},{},{"id":"a"}]})", invalid, "a,b,", "Connected. Models: b, a"}, {200, R"({"data":[]})", invalid, "", "Connected. Models: "},
        {200, "plain", invalid, invalid, "Connected successfully"}, {200, R"({"data":[1]})", invalid, invalid, "Connected successfully"},
        {404, "gone\nnow", "! HTTP error 404: gone\nnow", "! HTTP error 404", "! HTTP error 404"}, {500, "\xFF", "! HTTP error 500", "! HTTP error 500", "! HTTP error 500"},
        {302, "", "! HTTP error 302", "! HTTP error 302", "! HTTP error 302"},
    };
    // clang-format on
    for (const Case& each : cases) {
        server.standBy({Server::answer(each.status, each.body)});
        EXPECT_EQ(whole(), each.whole) << each.body;
        EXPECT_EQ(models(), each.models) << each.body;
        EXPECT_EQ(connection(), each.connection) << each.body;
    }
    server.standBy({"what\r\n\r\n"});
    EXPECT_EQ(whole(), invalid);
    EXPECT_EQ(models(), "! HTTP error 0");
}

TEST_F(AIServices, sayWhyTheyCanNotAsk) {
    for (const char* endpoint : {"", "localhost:1234", "nonsense", "http://"}) {
        settings.set("aiEndpoint", endpoint);
        for (const std::string& said : {texts(), events(), whole(), models(), connection()})
            EXPECT_EQ(said, "! Invalid API endpoint URL") << endpoint;
    }
    settings.set("aiEndpoint", "http://127.0.0.1:1");
    EXPECT_THAT(events(), HasSubstr("connect"));
    settings.set("aiApiKey", "a\r\nX-Evil: 1");
    for (const std::string& said : {texts(), whole(), models()})
        EXPECT_THAT(said, AllOf(HasSubstr("control character"), Not(HasSubstr("Evil"))));
    EXPECT_THAT(server.requests(), ElementsAre());
    EXPECT_TRUE(AIService::isConfigured(" x ", "m\n"));
    EXPECT_FALSE(AIService::isConfigured(" \n", "m"));
    EXPECT_FALSE(AIService::isConfigured("x", " "));
}

TEST_F(AIServices, leaveTheServerWithTheStream) {
    server.expect({Server::answer(200, chat::text("a")), Server::Silence{}});
    EXPECT_EQ(outcome([&] {
                  return [](AIService& asked) -> Task<std::string> {
                      const auto stream = asked.streamChatWithTools({});
                      const auto first = co_await stream.next();
                      co_return showEvent(*first) + (asked.isStreaming() ? " streams" : "");
                  }(service);
              }),
              "a streams");
    EXPECT_FALSE(service.isStreaming());
    server.waitForLeaving();
}

} // namespace
} // namespace quillorn
