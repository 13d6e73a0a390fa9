#include "Integration/ServerProcess.h"
#include "Platform/Json.h"
#include "Support/TestClient.h"

#include <csignal>
#include <gtest/gtest.h>

namespace quillorn {
namespace {

struct Outcome {
    int status;
    std::string output;
    std::string errors;
};

Outcome run(const std::filesystem::path& home, std::vector<std::string> arguments) {
    ProgramProcess program(home, {.arguments = std::move(arguments)});
    const int status = program.wait();
    return {status, program.output(), program.errors()};
}

TEST(CommandLine, answersHelpAndRefusesWhatItDoesNotKnow) {
    TemporaryFolder home;
    struct Case {
        std::vector<std::string> arguments;
        int status;
        std::string part;
    };
    const Case cases[] = {
        {{"--version"}, 0, "quillorn 1."},
        {{"--help"}, 0, "serve"},
        {{"serve", "--help"}, 0, "--require-auth"},
        {{"settings", "set", "--help"}, 0, "VALUE"},
        {{}, 2, "A command is missing"},
        {{"settings"}, 2, "A command is missing"},
        {{"settings", "dance"}, 2, "dance"},
        {{"dance"}, 2, "dance"},
        {{"serve", "--port", "70000"}, 2, "--port"},
        {{"serve", "--port", "ten"}, 2, "--port"},
        {{"settings", "get"}, 2, "KEY"},
        {{"settings", "get", "nope"}, 1, "there is no setting \"nope\""},
        {{"settings", "set", "apiPort", "ten"}, 1, "apiPort must be a whole number, not \"ten\""},
        {{"settings", "set", "apiAutoStart", "maybe"}, 1, "apiAutoStart must be true or false"},
        {{"settings", "set", "backupLastDate", "yesterday"}, 1, "backupLastDate must be a date"},
        {{"settings", "reset", "nope"}, 1, "there is no setting \"nope\""},
    };
    for (const Case& each : cases) {
        const Outcome outcome = run(home.path(), each.arguments);
        EXPECT_EQ(outcome.status, each.status) << each.part;
        EXPECT_NE((each.status == 0 ? outcome.output : outcome.errors).find(each.part), std::string::npos)
            << outcome.output << outcome.errors;
    }
}

TEST(CommandLine, keepsSettings) {
    TemporaryFolder home;
    struct Case {
        std::string key, written, read, json, byDefault;
    };
    const Case cases[] = {
        {"apiPort", "18081", "18081", "18081", "18080"},
        {"apiAutoStart", "yes", "true", "true", "false"},
        {"aiModel", "größer als \"alles\"", "größer als \"alles\"", "\"größer als \\\"alles\\\"\"", ""},
        {"notificationHour", "-1", "-1", "-1", "8"},
        {"reminderImportRecent", "[\"a\", \"b\"]", "[\"a\",\"b\"]", "[\"a\",\"b\"]", ""},
        {"sidebarSelectionKey", "all", "all", "\"all\"", "today"},
    };
    for (const Case& each : cases) {
        EXPECT_EQ(run(home.path(), {"settings", "get", each.key}).output, each.byDefault + "\n");
        EXPECT_EQ(run(home.path(), {"settings", "set", each.key, "--", each.written}).status, 0);
        EXPECT_EQ(run(home.path(), {"settings", "get", each.key}).output, each.read + "\n");
        EXPECT_EQ(run(home.path(), {"settings", "get", "--json", each.key}).output, each.json + "\n");
        const Json listed = Json::parse(run(home.path(), {"settings", "list", "--all", "--json"}).output);
        ASSERT_NE(listed.find(each.key), nullptr);
        EXPECT_EQ(*listed.find(each.key)->find("value"), Json::parse(each.json));
        EXPECT_EQ(run(home.path(), {"settings", "reset", each.key}).status, 0);
        EXPECT_EQ(run(home.path(), {"settings", "get", each.key}).output, each.byDefault + "\n");
    }
    const std::string list = run(home.path(), {"settings", "list"}).output;
    EXPECT_NE(list.find("collapsedGroupIDs"), std::string::npos);
    EXPECT_EQ(list.find("sidebarSelectionKey"), std::string::npos);
}

TEST(Timer, worksOnTheStoreBesideTheServer) {
    TemporaryFolder home;
    ServerProcess server(home.path());
    const auto post = [&](const std::string& path, const std::string& body) {
        return Json::parse(bodyOf(answerTo(server.port(), "POST " + path + " HTTP/1.1\r\nContent-Length: " +
                                                              std::to_string(body.size()) + "\r\n\r\n" + body)));
    };
    const auto text = [](const Json& record, const char* key) { return *record.find(key)->asString(); };
    const std::string offer = text(post("/api/tasks", R"({"title": "Write the offer"})"), "id");
    const std::string call = text(post("/api/tasks", R"({"title": "Call the printer"})"), "id");
    const auto status = [&] { return Json::parse(run(home.path(), {"timer", "status", "--json"}).output); };

    EXPECT_EQ(run(home.path(), {"timer", "status"}).output, "No timer is running\n");
    EXPECT_EQ(status(), Json(Json::Object{{"isRunning", false}}));
    EXPECT_EQ(run(home.path(), {"timer", "start", offer}).output, "Started: Write the offer\n");
    EXPECT_EQ(text(status(), "taskId"), offer);
    EXPECT_EQ(text(status(), "displayName"), "Write the offer");
    EXPECT_TRUE(run(home.path(), {"timer", "start", call}).output.starts_with("Stopped: Write the offer  00:0"));
    // The server shows it at once: the task is in progress, and its time counts.
    const Json list = Json::parse(bodyOf(answerTo(server.port(), "GET /api/tasks?title=call HTTP/1.1\r\n\r\n")));
    EXPECT_EQ(*list.asArray()->front().find("status"), Json(1));
    // Completing the task over the API stops the timer for the command line too.
    post("/api/tasks/" + call + "/complete", "");
    EXPECT_EQ(status(), Json(Json::Object{{"isRunning", false}}));
    run(home.path(), {"timer", "start", offer});
    EXPECT_TRUE(run(home.path(), {"timer", "stop"}).output.starts_with("Stopped: Write the offer  00:0"));

    const Outcome idle = run(home.path(), {"timer", "stop"});
    EXPECT_EQ(idle.status, 1);
    EXPECT_EQ(idle.errors, "quillorn: no timer is running\n");
    EXPECT_EQ(run(home.path(), {"timer", "start", "offer"}).errors, "quillorn: \"offer\" is no task id\n");
    EXPECT_EQ(run(home.path(), {"timer", "start", "00000000-0000-0000-0000-000000000000"}).errors,
              "quillorn: there is no task with the id 00000000-0000-0000-0000-000000000000\n");
}

TEST(Serve, endsCleanlyOnASignal) {
    for (const int signal : {SIGTERM, SIGINT}) {
        TemporaryFolder home;
        ServerProcess server(home.path());
        TestClient idle(server.port());
        idle.send("GET /api/health HTTP/1.1\r\nConnection: keep-alive\r\n\r\n");
        EXPECT_NE(idle.response().find("\"status\":\"ok\""), std::string::npos);
        server.signal(signal);
        EXPECT_EQ(server.wait(), 0);
        EXPECT_TRUE(server.errors().ends_with("API Server stopped\n")) << server.errors();
        EXPECT_FALSE(std::filesystem::exists(home / "data/Quillorn/Quillorn.store-wal") &&
                     std::filesystem::file_size(home / "data/Quillorn/Quillorn.store-wal") > 0);
    }
}

TEST(Serve, takesOptionsForThisRunAndSettingsOtherwise) {
    TemporaryFolder home;
    run(home.path(), {"settings", "set", "apiAuthKey", "secret"});
    run(home.path(), {"settings", "set", "apiRequireAuthLocal", "true"});
    const std::string request = "GET /api/tasks HTTP/1.1\r\n\r\n";
    const std::string withKey = "GET /api/tasks HTTP/1.1\r\nAuthorization: Bearer ";
    {
        ServerProcess server(home.path());
        EXPECT_TRUE(answerTo(server.port(), request).starts_with("HTTP/1.1 401 "));
        EXPECT_TRUE(answerTo(server.port(), withKey + "secret\r\n\r\n").starts_with("HTTP/1.1 200 "));
    }
    {
        ServerProcess server(home.path(), {.arguments = {"--key", "other"}});
        EXPECT_TRUE(answerTo(server.port(), withKey + "secret\r\n\r\n").starts_with("HTTP/1.1 401 "));
        EXPECT_TRUE(answerTo(server.port(), withKey + "other\r\n\r\n").starts_with("HTTP/1.1 200 "));
    }
    EXPECT_EQ(run(home.path(), {"settings", "get", "apiAuthKey"}).output, "secret\n");
}

TEST(Serve, saysWhyItCannotStart) {
    TemporaryFolder home;
    ServerProcess first(home.path());
    const Outcome taken = run(home.path(), {"serve", "--port", std::to_string(first.port())});
    EXPECT_EQ(taken.status, 1);
    EXPECT_NE(taken.errors.find("Address already in use"), std::string::npos) << taken.errors;

    const Outcome keyless = run(home.path(), {"serve", "--port", "0", "--external"});
    EXPECT_EQ(keyless.status, 1);
    EXPECT_NE(keyless.errors.find("API server not started: external access and \"require API key\" both need an API "
                                  "key. Set one in Settings."),
              std::string::npos);
}

TEST(Serve, explainsAStoreThatCannotBeOpened) {
    TemporaryFolder home;
    std::filesystem::create_directories(home / "data/Quillorn");
    writeFile(home / "data/Quillorn/Quillorn.store", std::string(5000, 'x'));
    const Outcome outcome = run(home.path(), {"serve", "--port", "0"});
    EXPECT_EQ(outcome.status, 1);
    for (const std::string& part : {std::string("Quillorn couldn't open your data\n"), std::string("not a database"),
                                    "safe here:\n" + (home / "data/Quillorn/Backups").string()})
        EXPECT_NE(outcome.errors.find(part), std::string::npos) << outcome.errors;
    EXPECT_TRUE(readFile(home / "data/Quillorn/Quillorn.store") == std::string(5000, 'x'));
}

TEST(Serve, showsAnEmptyStoreInDemoMode) {
    TemporaryFolder home;
    for (const bool byArgument : {true, false}) {
        ServerProcess server(home.path(), byArgument
                                              ? ProgramProcess::Options{.arguments = {"-QUILLORN_DEMO"}}
                                              : ProgramProcess::Options{.environment = {{"QUILLORN_DEMO", "1"}}});
        const std::string body = "{\"title\":\"Try it\"}";
        EXPECT_TRUE(answerTo(server.port(), "POST /api/tasks HTTP/1.1\r\nContent-Length: " +
                                                std::to_string(body.size()) + "\r\n\r\n" + body)
                        .starts_with("HTTP/1.1 201 "));
        const std::string list = answerTo(server.port(), "GET /api/tasks HTTP/1.1\r\n\r\n");
        EXPECT_EQ(Json::parse(bodyOf(list)).asArray()->size(), 1U);
        EXPECT_FALSE(std::filesystem::exists(home / "data"));
    }
}

} // namespace
} // namespace quillorn
