#include "AI/TaskParsingService.h"
#include "Platform/Calendar.h"
#include "Platform/HttpClient.h"
#include "Platform/RunLoop.h"
#include "Support/FakeClock.h"
#include "Support/MemorySettings.h"
#include "Support/RecordingLog.h"
#include "Support/ScopedEnvironment.h"
#include "Support/ScriptedServer.h"

#include <fmt/core.h>
#include <fmt/ranges.h>
#include <gmock/gmock.h>

namespace quillorn {
namespace {

using testing::HasSubstr;

struct TaskParsing : testing::Test {
    TaskParsing() {
        settings.set("aiEndpoint", server.url());
        settings.set("aiModel", "m");
    }

    std::optional<ParsedTaskResult> parse(const TaskNames& names = {}) {
        std::optional<ParsedTaskResult> result;
        TaskScope scope;
        auto run = [](TaskParsing& test, TaskNames offer, std::optional<ParsedTaskResult>& into) -> Task<> {
            into = co_await test.service.parse("Call Bob", std::move(offer));
            test.loop.stop();
        };
        scope.start(run(*this, names, result));
        loop.run();
        return result;
    }
    void answer(const std::string& content) {
        const Json message = Json::Object{{"content", content}};
        const Json choice = Json::Object{{"message", message}};
        server.expect({ScriptedServer::answer(200, Json(Json::Object{{"choices", Json::Array{choice}}}).text())});
    }

    ScopedEnvironment noProxy{"no_proxy", "127.0.0.1"};
    FakeClock clock;
    Calendar calendar{"UTC", "en_US"};
    MemorySettings settings;
    ScriptedServer server;
    RecordingLog log;
    RunLoop loop{log};
    HttpClient client{loop};
    TaskParsingService service{client, settings, clock, calendar};
};

TEST_F(TaskParsing, readsWhatTheModelMakesOfASentence) {
    const std::pair<const char*, const char*> cases[] = {
        // clang-format off
        {R"({"title":"Call","description":"d","dueDate":"2026-02-11","priority":" High ","project":"P","tags":["a","b"]})", R"(Call|d|2026-02-11|High|P|["a", "b"])"},
        {"```json\n{\"title\":\"Call\",\"dueDate\":\"Next Monday\"}\n```", "Call|-|2026-01-19|-|-|[]"},
        {R"(Sure: {"title":"","dueDate":"2026-13-40","priority":"now","project":1,"tags":["a",1]})", "|-|-|-|-|[]"},
        {R"({"title":null})", "Could not parse AI response"}, {R"({"description":"d"})", "Could not parse AI response"}, {"no idea", "Could not parse AI response"},
        // clang-format on
    };
    for (const auto& [said, expected] : cases) {
        answer(said);
        const auto result = parse();
        EXPECT_FALSE(service.isParsing());
        EXPECT_EQ(result ? fmt::format("{}|{}|{}|{}|{}|{}", result->title, result->description.value_or("-"),
                                       result->dueDate ? calendar.format(*result->dueDate, "yyyy-MM-dd") : "-",
                                       result->priority ? label(*result->priority) : "-",
                                       result->projectName.value_or("-"), result->tagNames)
                         : service.parseError().value(),
                  expected);
    }
    EXPECT_FALSE(parse());
    EXPECT_EQ(service.parseError(), "HTTP error 500: no script");
}

TEST_F(TaskParsing, tellsTheModelWhatIsOnOffer) {
    answer("{}");
    answer("{}");
    parse();
    parse({{"Acme", "Site"}, {"bug"}});
    const auto systemPrompt = [&](std::size_t request) {
        const Json body = Json::parse(server.requests()[request].body);
        return *body.find("messages")->asArray()->front().find("content")->asString();
    };
    EXPECT_THAT(systemPrompt(0), HasSubstr("description.\n\nToday is: Thursday, January 15, 2026\nReturn ONLY a JSON"));
    EXPECT_THAT(systemPrompt(1), HasSubstr("2026\nAvailable projects: Acme, Site\nAvailable tags: bug\nReturn ONLY"));
    EXPECT_THAT(server.requests()[0].body, HasSubstr(R"({"content":"Call Bob","role":"user"}],"model":"m",)"));
}

TEST_F(TaskParsing, endsWithItsTask) {
    server.expect({ScriptedServer::Silence{}});
    {
        TaskScope scope;
        auto run = [](TaskParsingService& asked) -> Task<> { (void)co_await asked.parse("x", {}); };
        scope.start(run(service));
        EXPECT_TRUE(service.isParsing());
    }
    EXPECT_FALSE(service.isParsing());
}

} // namespace
} // namespace quillorn
