#include "Services/ThoughtkegClient.h"

#include "Models/ProjectTask.h"
#include "Platform/Json.h"
#include "Support/ManualQueue.h"
#include "Support/MemorySettings.h"
#include "Support/ScopedEnvironment.h"
#include "Support/ScriptedServer.h"
#include "Support/TestRecords.h"
#include "Support/TestStore.h"

#include <gmock/gmock.h>
#include <optional>
#include <thread>

namespace quillorn {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::StartsWith;
using Server = ScriptedServer;

struct ThoughtkegClientTest : testing::Test, TestStore {
    ThoughtkegClientTest() { settings.set("thoughtkegPushEnabled", true); }

    template <class Fill>
    void complete(const Fill& fill) const {
        change(*container, [&](ModelContext& context) {
            auto& task = make<ProjectTask>(context, {.title = "Offer"});
            fill(context, task);
            task.setCompleted(true, testNow);
        });
    }
    void completeDescribed() const {
        complete([](ModelContext&, ProjectTask& task) { task.setTaskDescription("Two pages"); });
    }
    /// Lets the main thread work, at a standing clock.
    void untilIdle() {
        for (queue.runPosted(); !client->isIdle(); queue.runPosted())
            std::this_thread::yield();
    }
    Json sent(std::size_t request) { return Json::parse(server.requests(request + 1)[request].body); }

    ScopedEnvironment proxy{"http_proxy", "http://127.0.0.1:9"};
    FakeClock clock;
    ManualQueue queue{clock};
    MemorySettings settings;
    Server server;
    HttpClient http{queue};
    ThoughtkegEnvironment environment{http, notifications, settings, queue, log};
    std::optional<ThoughtkegClient> client{std::in_place, environment, server.url() + "/capture"};
};

TEST_F(ThoughtkegClientTest, sendsWhatIsToBeLearntFromACompletedTask) {
    server.standBy({Server::answer(200, "")});
    complete([](ModelContext& context, ProjectTask& task) {
        auto& site = make<Project>(context, {.name = "Site"});
        site.setClient(&make<Client>(context, {.name = "Acme"}));
        task.setProject(&site);
        context.insert<Note>(Note::Arguments{.content = "Second", .task = &task}, testNow + 1s);
        make<Note>(context, {.content = "First", .task = &task});
        task.setTaskDescription("Two pages");
    });
    untilIdle();
    completeDescribed();
    untilIdle();
    const HttpRequest request = server.requests(1)[0];
    EXPECT_EQ(request.method + " " + request.path, "POST /capture");
    EXPECT_EQ(request.headers.at("content-type"), "application/json");
    Json first = sent(0);
    EXPECT_EQ(*first.find("body"),
              Json("**Project:** Site (client: Acme)\n**Completed:** 2026-01-15T12:00:00Z\n\n## Description\nTwo pages"
                   "\n\n## Notes\n- First\n- Second"));
    Json::Object& source = *first.asObject()->at("source_ref").asObject();
    EXPECT_TRUE(UUID::parse(*source.at("taskId").asString()));
    source.erase("taskId");
    EXPECT_EQ(Json(source).text(), R"({"app":"quillorn","client":"Acme","project":"Site"})");
    EXPECT_EQ(*first.find("kind"), Json("learning"));
    EXPECT_EQ(*sent(1).find("body"), Json("**Completed:** 2026-01-15T12:00:00Z\n\n## Description\nTwo pages"));
    EXPECT_EQ(*sent(1).find("source_ref")->find("project"), Json(""));
    EXPECT_TRUE(log.lines().empty());
}

TEST_F(ThoughtkegClientTest, sendsNothingElse) {
    complete([](ModelContext&, ProjectTask&) {}); // says nothing
    complete([](ModelContext&, ProjectTask& task) { task.setTaskDescription(""); });
    {
        ModelContext context(*container);
        make<ProjectTask>(context, {.title = "Not saved", .taskDescription = "x"}).setCompleted(true, testNow);
        EXPECT_TRUE(client->isIdle());
    }
    change(*container, [](ModelContext& context) {
        auto& task = make<ProjectTask>(context, {.title = "Open again", .taskDescription = "x"});
        task.setCompleted(true, testNow);
        task.setCompleted(false, testNow);
    });
    settings.set("thoughtkegPushEnabled", false);
    completeDescribed();
    settings.set("thoughtkegPushEnabled", true);
    client.emplace(environment, "http://example.com/capture");
    completeDescribed();
    EXPECT_TRUE(client->isIdle());
    client.reset();
    completeDescribed();
    queue.runPosted();
    EXPECT_TRUE(server.requests().empty());
}

TEST_F(ThoughtkegClientTest, aReceiverThatFailsCostsALine) {
    const std::pair<Server::Script, const char*> cases[] = {
        {{Server::answer(500, "no")}, "Thoughtkeg push rejected: HTTP 500"},
        {{Server::answer(302, "", "Location: /else\r\n")}, "Thoughtkeg push rejected: HTTP 302"},
        {{Server::Reset()}, "Thoughtkeg push skipped: "},
        {{"no HTTP\r\n\r\n"}, "Thoughtkeg push skipped: "},
    };
    for (const auto& [script, words] : cases) {
        log.clear();
        server.expect(script);
        completeDescribed();
        untilIdle();
        EXPECT_THAT(log.lines(), ElementsAre(StartsWith(words)));
    }
}

TEST_F(ThoughtkegClientTest, aSlowReceiverHasTenSecondsAndSixteenAtATime) {
    server.standBy({Server::Silence()});
    for (int i = 0; i < 20; ++i)
        completeDescribed();
    queue.runPosted();
    EXPECT_EQ(server.requests(16).size(), 16U);
    log.clear();
    queue.advance(10s);
    EXPECT_EQ(log.lines(), std::vector<std::string>(16, "Thoughtkeg push skipped: The request timed out."));
    server.requests(20);
    queue.advance(10s);
    EXPECT_TRUE(client->isIdle());
}

} // namespace
} // namespace quillorn
