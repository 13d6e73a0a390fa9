#include "Integration/ProgramTest.h"
#include "Support/TestClient.h"

#include <csignal>
#include <gmock/gmock.h>

namespace quillorn {
namespace {

using testing::AllOf;
using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

using CommandLine = ProgramTest;
using Timer = ProgramTest;
using Serve = ProgramTest;

TEST_F(CommandLine, answersHelpAndRefusesWhatItDoesNotKnow) {
    struct Case {
        std::vector<std::string> arguments;
        int status;
        const char* part;
    };
    const Case cases[] = {
        // clang-format off
        {{"--version"}, 0, "quillorn 1."}, {{"--help"}, 0, "serve"}, {{"serve", "--help"}, 0, "--require-auth"},
        {{"settings", "set", "--help"}, 0, "VALUE"},
        {{}, 2, "A command is missing"}, {{"settings"}, 2, "A command is missing"}, {{"dance"}, 2, "dance"},
        {{"settings", "dance"}, 2, "dance"}, {{"settings", "get"}, 2, "KEY"},
        {{"serve", "--port", "70000"}, 2, "--port"}, {{"serve", "--port", "ten"}, 2, "--port"},
        {{"settings", "get", "nope"}, 1, "there is no setting \"nope\""},
        {{"settings", "set", "apiPort", "ten"}, 1, "apiPort must be a whole number, not \"ten\""},
        // clang-format on
    };
    for (const Case& each : cases) {
        const Outcome outcome = run(each.arguments);
        EXPECT_EQ(outcome.status, each.status) << each.part;
        EXPECT_THAT(each.status == 0 ? outcome.output : outcome.errors, HasSubstr(each.part));
    }
}

TEST_F(CommandLine, keepsSettings) {
    struct Case {
        const char *key, *written, *read, *json, *byDefault;
    };
    const Case cases[] = {
        {"apiPort", "18081", "18081\n", "18081\n", "18080\n"},
        {"apiAutoStart", "yes", "true\n", "true\n", "false\n"},
        {"aiModel", "größer als \"alles\"", "größer als \"alles\"\n", "\"größer als \\\"alles\\\"\"\n", "\n"},
        {"reminderImportRecent", "[\"a\", \"b\"]", "[\"a\",\"b\"]\n", "[\"a\",\"b\"]\n", "\n"},
    };
    for (const Case& each : cases) {
        EXPECT_EQ(outputOf({"settings", "get", each.key}), each.byDefault);
        EXPECT_EQ(run({"settings", "set", each.key, "--", each.written}).status, 0);
        EXPECT_EQ(outputOf({"settings", "get", each.key}), each.read);
        EXPECT_EQ(outputOf({"settings", "get", "--json", each.key}), each.json);
        const Json listed = Json::parse(outputOf({"settings", "list", "--all", "--json"}));
        EXPECT_EQ(*listed.find(each.key)->find("value"), Json::parse(each.json));
        EXPECT_EQ(run({"settings", "reset", each.key}).status, 0);
        EXPECT_EQ(outputOf({"settings", "get", each.key}), each.byDefault);
    }
    EXPECT_THAT(outputOf({"settings", "list"}),
                AllOf(HasSubstr("collapsedGroupIDs"), Not(HasSubstr("sidebarSelectionKey"))));
}

TEST_F(Timer, worksOnTheStoreBesideTheServer) {
    ServerProcess server(home.path());
    const auto text = [](const Json& record, const char* key) { return *record.find(key)->asString(); };
    const std::string offer = text(server.json("POST", "/api/tasks", R"({"title": "Write the offer"})"), "id");
    const std::string call = text(server.json("POST", "/api/tasks", R"({"title": "Call the printer"})"), "id");
    const auto status = [&] { return Json::parse(outputOf({"timer", "status", "--json"})); };

    EXPECT_EQ(status(), Json(Json::Object{{"isRunning", false}}));
    EXPECT_EQ(outputOf({"timer", "start", offer}), "Started: Write the offer\n");
    EXPECT_EQ(text(status(), "taskId"), offer);
    EXPECT_THAT(outputOf({"timer", "start", call}), StartsWith("Stopped: Write the offer  00:0"));
    // The server shows it at once: the task is in progress.
    EXPECT_EQ(*server.json("GET", "/api/tasks?title=call").asArray()->front().find("status"), Json(1));
    // Completing the task over the API stops the timer for the command line too.
    server.json("POST", "/api/tasks/" + call + "/complete");
    EXPECT_EQ(status(), Json(Json::Object{{"isRunning", false}}));
    run({"timer", "start", offer});
    EXPECT_THAT(outputOf({"timer", "stop"}), StartsWith("Stopped: Write the offer  00:0"));

    const Outcome idle = run({"timer", "stop"});
    EXPECT_EQ(idle.status, 1);
    EXPECT_EQ(idle.errors, "quillorn: no timer is running\n");
    EXPECT_EQ(run({"timer", "start", "00000000-0000-0000-0000-000000000000"}).errors,
              "quillorn: there is no task with the id 00000000-0000-0000-0000-000000000000\n");
}

TEST_F(Serve, endsCleanlyOnASignal) {
    for (const int signal : {SIGTERM, SIGINT}) {
        ServerProcess server(home.path());
        TestClient idle(server.port());
        idle.send("GET /api/health HTTP/1.1\r\nConnection: keep-alive\r\n\r\n");
        EXPECT_THAT(idle.response(), HasSubstr("\"status\":\"ok\""));
        server.json("POST", "/api/tasks", R"({"title": "In the log"})");
        server.signal(signal);
        EXPECT_EQ(server.wait(), 0);
        EXPECT_THAT(server.errors(), EndsWith("API Server stopped\n"));
        EXPECT_EQ(std::filesystem::file_size(home / "data/Quillorn/Quillorn.store-wal"), 0U);
    }
}

TEST_F(Serve, takesOptionsForThisRunAndSettingsOtherwise) {
    run({"settings", "set", "apiAuthKey", "secret"});
    run({"settings", "set", "apiRequireAuthLocal", "true"});
    const auto statusWith = [](const ServerProcess& server, const std::string& key) {
        return server.request("GET", "/api/tasks", "", "Authorization: Bearer " + key + "\r\n").substr(9, 3);
    };
    for (const bool byOption : {false, true}) {
        const std::vector<std::string> options{"--key", "other"};
        const ServerProcess server(home.path(),
                                   byOption ? ChildProcess::Launch{.arguments = options} : ChildProcess::Launch{});
        EXPECT_EQ(server.request("GET", "/api/tasks").substr(9, 3), "401");
        EXPECT_EQ(statusWith(server, "secret"), byOption ? "401" : "200");
        EXPECT_EQ(statusWith(server, "other"), byOption ? "200" : "401");
    }
    EXPECT_EQ(outputOf({"settings", "get", "apiAuthKey"}), "secret\n");
}

TEST_F(Serve, saysWhyItCannotStart) {
    const auto first = std::make_unique<ServerProcess>(home.path());
    const auto refusal = [&](std::vector<std::string> arguments) {
        arguments.insert(arguments.begin(), "serve");
        const Outcome outcome = run(arguments);
        EXPECT_EQ(outcome.status, 1);
        return outcome.errors;
    };
    EXPECT_THAT(refusal({"--port", std::to_string(first->port())}), HasSubstr("Address already in use"));
    EXPECT_THAT(refusal({"--port", "0", "--external"}),
                HasSubstr("API server not started: external access and \"require API key\" both need an API key. Set "
                          "one in Settings."));
    const std::string junk(5000, 'x');
    std::filesystem::remove_all(home / "data/Quillorn");
    std::filesystem::create_directories(home / "data/Quillorn");
    writeFile(home / "data/Quillorn/Quillorn.store", junk);
    EXPECT_THAT(refusal({"--port", "0"}),
                AllOf(HasSubstr("Quillorn couldn't open your data\n"), HasSubstr("not a database"),
                      HasSubstr("safe here:\n" + (home / "data/Quillorn/Backups").string())));
    EXPECT_TRUE(readFile(home / "data/Quillorn/Quillorn.store") == junk);
}

TEST_F(Serve, showsAnEmptyStoreInDemoMode) {
    const ServerProcess server(home.path(), {.arguments = {"-QUILLORN_DEMO"}});
    EXPECT_NE(server.json("POST", "/api/tasks", R"({"title":"Try it"})").find("id"), nullptr);
    EXPECT_EQ(server.json("GET", "/api/tasks").asArray()->size(), 1U);
    EXPECT_FALSE(std::filesystem::exists(home / "data"));
}

} // namespace
} // namespace quillorn
