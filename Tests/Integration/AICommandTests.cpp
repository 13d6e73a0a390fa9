#include "Integration/ProgramTest.h"
#include "Support/ScriptedServer.h"

#include <csignal>
#include <gmock/gmock.h>

namespace quillorn {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;
using Server = ScriptedServer;

/// A store with two projects of a client, made over the API, and a scripted model.
struct AICommands : ProgramTest {
    AICommands() {
        ServerProcess server(home.path());
        const auto add = [&](const char* path, const std::string& body) {
            return *server.json("POST", path, body).find("id")->asString();
        };
        acme = add("/api/clients", R"({"name": "Acme"})");
        site = add("/api/projects", R"({"name": "Site", "clientId": ")" + acme + "\"}");
        add("/api/projects", R"({"name": "Website old", "clientId": ")" + acme + "\"}");
        add("/api/tags", R"({"name": "bug"})");
        server.signal(SIGTERM);
        server.wait();
    }
    void configure() {
        run({"settings", "set", "aiEndpoint", model.url()});
        run({"settings", "set", "aiModel", "m"});
        run({"settings", "set", "aiApiKey", "secret"});
    }

    std::string acme, site;
    Server model;
};

TEST_F(AICommands, tellWhetherThereIsAModel) {
    EXPECT_EQ(Json::parse(outputOf({"ai", "status", "--json"})).text(),
              R"({"configured":false,"endpoint":"","hasKey":false,"model":"","reasoningEffort":""})");
    EXPECT_EQ(run({"ai", "models"}).errors, "quillorn: Invalid API endpoint URL\n");
    EXPECT_THAT(run({"chat", "--project", "Site", "Hi"}).errors, HasSubstr("Configure an AI provider in Settings"));
    EXPECT_THAT(outputOf({"doctor"}), HasSubstr("not configured"));
    configure();
    EXPECT_THAT(outputOf({"ai", "status"}) + outputOf({"ai", "status", "--json"}),
                AllOf(HasSubstr("\"hasKey\": true"), Not(HasSubstr("secret"))));
    EXPECT_THAT(outputOf({"doctor"}), HasSubstr("127.0.0.1 is on this machine"));
    model.standBy({Server::answer(200, R"({"data":[{"id":"b"},{"id":"a\u001b"}]})")});
    EXPECT_EQ(outputOf({"ai", "models"}), "a\x1b\nb\n");
    EXPECT_EQ(Json::parse(outputOf({"ai", "models", "--json"})).text(), R"(["a\u001B","b"])");
    EXPECT_EQ(outputOf({"ai", "test"}), "Connected. Models: b, a\x1b\n");
    model.standBy({Server::answer(401, "")});
    const Outcome refused = run({"ai", "test"});
    EXPECT_EQ(refused.status, 1);
    EXPECT_EQ(refused.errors, "quillorn: HTTP error 401\n");
}

TEST_F(AICommands, converseAndReport) {
    configure();
    model.expect(chat::stream({chat::text("Hello "), chat::text("you")}));
    EXPECT_EQ(outputOf({"chat", "--project", "site", "Hi", "there"}), "Hello you\n");
    EXPECT_THAT(model.requests().back().body, HasSubstr(R"({"content":"Hi there","role":"user"})"));
    const std::string history = outputOf({"chat", "--project", site.substr(0, 8), "--history", "--json"});
    EXPECT_THAT(history, AllOf(HasSubstr("\"content\": \"Hello you\""), HasSubstr("\"role\": \"assistant\"")));
    model.expect(chat::stream({chat::text("**Acme**\n- Built")}));
    EXPECT_THAT(outputOf({"summary", "--client", "Acme", "--from", "2026-01-01", "--to", "today", "--html"}),
                AllOf(StartsWith("<div"), HasSubstr("<p><b>Acme</b></p><ul><li>Built</li></ul>")));
    EXPECT_EQ(run({"summary", "--client", "Acme", "--from", "tomorrow", "--to", "today"}).status, 2);
    EXPECT_EQ(run({"summary", "--client", "Acme", "--from", "soon", "--to", "today"}).status, 2);
    model.expect({Server::answer(200, chat::text("Half"), "Content-Length: 999\r\n")});
    const Outcome broken = run({"chat", "--client", "acme", "Go"});
    EXPECT_EQ(broken.status, 1);
    EXPECT_EQ(broken.output, "Half\n");
    EXPECT_EQ(run({"chat", "--project", "Site", "--clear"}).status, 2);
    EXPECT_EQ(run({"chat", "--project", "Site", "--clear", "--yes"}).status, 0);
    EXPECT_EQ(Json::parse(outputOf({"chat", "--project", "Site", "--history", "--json"})), Json(Json::Array{}));
}

TEST_F(AICommands, keepWhatHasComeWhenTheyAreStopped) {
    configure();
    for (const int signal : {SIGINT, SIGTERM}) {
        model.expect({Server::answer(200, chat::text("So far\n")), Server::Silence{}});
        ProgramProcess program(home.path(), {.arguments = {"chat", "--client", acme, "Hi"}});
        EXPECT_EQ(program.answer(), "So far");
        program.signal(signal);
        EXPECT_EQ(program.wait(), 128 + signal);
        EXPECT_THAT(outputOf({"chat", "--client", acme, "--history"}), HasSubstr("AI: So far"));
    }
}

TEST_F(AICommands, knowWhatIsMeant) {
    const std::tuple<const char*, int, const char*> cases[] = {{"Site", 0, ""},
                                                               {"old", 0, ""},
                                                               {"zzz", 1, "there is no project \"zzz\"\n"},
                                                               {"SIT", 1, "several projects fit \"SIT\":\n  "}};
    for (const auto& [name, status, words] : cases) {
        const Outcome outcome = run({"chat", "--project", name, "--history"});
        EXPECT_EQ(outcome.status, status) << name;
        EXPECT_THAT(outcome.errors, HasSubstr(words));
    }
    EXPECT_EQ(run({"chat", "--history"}).status, 2);
    EXPECT_EQ(run({"chat", "--project", "a", "--client", "b", "--history"}).status, 2);
    EXPECT_EQ(Json::parse(outputOf({"parse", "--json", "Fix it 2026-02-11 15:00,", "high priority #bug @site"})).text(),
              R"({"description":null,"dueDate":"2026-02-11T15:00:00Z","dueHasTime":true,"priority":2,"project":"Site",)"
              R"("tags":["bug"],"title":"Fix it"})");
    configure();
    const std::string said = R"({\"title\":\"Fix\",\"project\":\"Made up\",\"tags\":[\"bug\",\"other\"]})";
    model.expect({Server::answer(200, R"({"choices":[{"message":{"content":")" + said + R"("}}]})")});
    EXPECT_EQ(outputOf({"parse", "Fix it"}), "Title        Fix\nTags         bug\n");
    EXPECT_THAT(outputOf({"parse", "--no-ai", "Fix it", "!low"}), HasSubstr("Priority     Low\n"));
    EXPECT_EQ(run({"parse", "Fix it"}).errors, "quillorn: HTTP error 500: no script\n");
}

} // namespace
} // namespace quillorn
