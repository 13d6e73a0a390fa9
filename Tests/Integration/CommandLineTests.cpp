#include "Integration/ProgramTest.h"
#include "Platform/FileDescriptor.h"
#include "Support/ScopedLimit.h"
#include "Support/TestClient.h"

#include <array>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <gmock/gmock.h>
#include <sys/resource.h>
#include <unistd.h>

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
        {{}, 0, "\nTasks:\n"}, {{"settings"}, 0, "Change one setting"}, {{"help"}, 0, "\nTasks:\n"},
        {{"help", "settings", "set"}, 0, "Usage: quillorn settings set [OPTIONS] KEY"}, {{"version"}, 0, "quillorn 1."},
        {{"xyzzy"}, 2, "there is no command \"xyzzy\"\n"}, {{"help", "timr"}, 2, "did you mean \"timer\"?"},
        {{"setings", "list"}, 2, "there is no command \"setings\"; did you mean \"settings\"?\n"},
        {{"timer", "statsu"}, 2, "there is no command \"statsu\"; did you mean \"status\"?\n"},
        {{"timer", "status", "--jsno"}, 2, "there is no option --jsno; did you mean \"--json\"?\n"},
        {{"backup", "now"}, 2, "\"now\" was not expected\n"}, {{"settings", "get"}, 2, "KEY"},
        {{"serve", "--port", "70000"}, 2, "--port"}, {{"serve", "--port", "ten"}, 2, "--port"},
        {{"settings", "get", "nope"}, 1, "there is no setting \"nope\""},
        {{"settings", "set", "apiPort", "ten"}, 1, "apiPort must be a whole number from 1 to 65535, not \"ten\""},
        {{"settings", "set", "apiPort", "0"}, 1, "to 65535"}, {{"settings", "set", "apiPort", "65536"}, 1, "to 65535"},
        {{"settings", "set", "notificationHour", "24"}, 1, "notificationHour must be a whole number from 0 to 23"},
        {{"settings", "set", "notificationMinute", "60"}, 1, "from 0 to 59"},
        {{"settings", "set", "defaultPriority", "4"}, 1, "from 0 to 3"},
        {{"settings", "set", "backupFolderPath", "here"}, 1, "a folder by its whole path"},
        {{"settings", "set", "apiAuthKey", "key "}, 1, "apiAuthKey must be a text without control characters, and"},
        {{"settings", "set", "apiAuthKey", "k\x7Fy"}, 1, "without blanks at its ends\n"},
        {{"settings", "set", "apiAuthKey"}, 2, "VALUE is required"},
        {{"settings", "set", "apiAuthKey", "key", "--stdin"}, 2, "excludes"},
        {{"settings", "set", "aiModel", "--generate"}, 1, "only apiAuthKey can be made"},
        {{"settings", "get", "apiprt"}, 1, "there is no setting \"apiprt\"; did you mean \"apiPort\"?"},
        {{"settings", "set", "apiExternalAccess", "off"}, 0, "A server that runs takes up apiExternalAccess at its next"},
        {{"serve", "--port", "0", "--key", " key"}, 1, "the API key must be a text without control characters"},
        {{"serve", "--port", "0", "--key-file", "/no/such"}, 1, "/no/such can't be read: No such file"},
        // clang-format on
    };
    for (const Case& each : cases) {
        const Outcome outcome = run(each.arguments);
        EXPECT_EQ(outcome.status, each.status) << each.part;
        EXPECT_THAT(each.status == 0 ? outcome.output : outcome.errors, HasSubstr(each.part));
    }
}

TEST_F(CommandLine, failsWhereItCannotWrite) {
    const ServerProcess server(home.path());
    const auto statusOf = [&](const std::vector<std::string>& arguments, const std::function<void()>& prepare) {
        return ProgramProcess(home.path(), {.arguments = arguments, .prepare = prepare}).wait();
    };
    const std::pair<int, std::vector<std::string>> cases[] = {
        {STDOUT_FILENO, {"settings", "list"}},
        {STDOUT_FILENO, {"--help"}},
        {STDERR_FILENO, {"dance"}},
        {STDERR_FILENO, {"settings", "get", "nope"}},
        {STDERR_FILENO, {"serve", "--port", std::to_string(server.port())}},
    };
    for (const auto& [stream, arguments] : cases) {
        const auto open = [number = stream](const char* path) { ::dup2(::open(path, O_WRONLY | O_CLOEXEC), number); };
        EXPECT_EQ(statusOf(arguments, [&, number = stream] { ::close(number); }), 1) << arguments.size();
        EXPECT_EQ(statusOf(arguments, [&] { open("/dev/full"); }), 1) << arguments.size();
    }
    const auto leavePipe = [] {
        int ends[2];
        if (::pipe2(ends, O_CLOEXEC) == 0)
            ::dup2(ends[1], STDOUT_FILENO);
    };
    EXPECT_EQ(statusOf({"settings", "list"}, leavePipe), 1);
    const auto allowNoFile = [] {
        const rlimit none{};
        ::setrlimit(RLIMIT_FSIZE, &none);
    };
    // ThreadSanitizer writes a file before the program begins.
    EXPECT_TRUE(isSanitized || statusOf({"settings", "set", "apiPort", "2000"}, allowNoFile) == 1);
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

    EXPECT_EQ(status(), Json(Json::Array{}));
    EXPECT_EQ(outputOf({"timer", "start", offer}), "Started: Write the offer\n");
    EXPECT_EQ(text(status().asArray()->at(0), "taskId"), offer);
    EXPECT_THAT(outputOf({"timer", "start", call}), StartsWith("Stopped: Write the offer  00:0"));
    // The server shows it at once: the task is in progress.
    EXPECT_EQ(*server.json("GET", "/api/tasks?title=call").asArray()->front().find("status"), Json(1));
    // Completing the task over the API stops the timer for the command line too.
    server.json("POST", "/api/tasks/" + call + "/complete");
    EXPECT_EQ(status(), Json(Json::Array{}));
    run({"timer", "start", offer});
    EXPECT_THAT(outputOf({"timer", "stop"}), StartsWith("Stopped: Write the offer  00:0"));

    const Outcome idle = run({"timer", "stop"});
    EXPECT_EQ(idle.status, 1);
    EXPECT_EQ(idle.errors, "quillorn: no timer is running\n");
    EXPECT_EQ(run({"timer", "start", "00000000-0000-0000-0000-000000000000"}).errors,
              "quillorn: there is no task \"00000000-0000-0000-0000-000000000000\"\n");
}

/// What the program writes to a terminal.
struct OnTerminal : ProgramTest {
    std::string shownBy(std::vector<std::string> arguments) const {
        const FileDescriptor terminal(::posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC));
        ::unlockpt(terminal.number());
        FileDescriptor screen(::open(::ptsname(terminal.number()), O_RDWR | O_NOCTTY | O_CLOEXEC));
        ProgramProcess program(home.path(), {.arguments = std::move(arguments), .prepare = [&] {
                                                 for (const int stream : {STDOUT_FILENO, STDERR_FILENO})
                                                     ::dup2(screen.number(), stream);
                                             }});
        program.wait();
        screen = {};
        std::string text;
        std::array<char, 4096> piece{};
        // A read gives what one write has left, up to the end that is an error where a terminal is concerned.
        for (ssize_t count = 0; (count = ::read(terminal.number(), piece.data(), piece.size())) > 0;)
            text.append(piece.data(), static_cast<std::size_t>(count));
        return text;
    }
};

TEST_F(OnTerminal, controlCharactersAreEscapedAndInPipesTheyAreNot) {
    const std::string hostile = "\x1B]0;mine\a \xC2\x9B"
                                "2J\x7F\tü\n",
                      escaped = "\\u001B]0;mine\\u0007 \\u009B2J\\u007F\\tü\\n";
    {
        ServerProcess server(home.path());
        const Json task = server.json("POST", "/api/tasks", Json(Json::Object{{"title", hostile + "."}}).text());
        EXPECT_EQ(shownBy({"timer", "start", *task.find("id")->asString()}), "Started: " + escaped + ".\r\n");
    }
    EXPECT_THAT(outputOf({"timer", "status"}), StartsWith(hostile + ".  00:0"));
    EXPECT_THAT(shownBy({"timer", "status"}), StartsWith(escaped + ".  00:0"));
    EXPECT_THAT(shownBy({"timer", "status", "--json"}), HasSubstr(R"("displayName": ")" + escaped + ".\",\r\n"));
    EXPECT_THAT(shownBy({"timer", "stop", "--all"}), StartsWith("Stopped: " + escaped));
    run({"settings", "set", "aiModel", hostile});
    for (const auto& [words, value] : {std::pair(std::vector<std::string>{"-x"}, "-x\n"), {{"--", "--y"}, "--y\n"}}) {
        std::vector<std::string> command{"settings", "set", "aiReasoningEffort"};
        command.insert(command.end(), words.begin(), words.end());
        run(command);
        EXPECT_EQ(outputOf({"settings", "get", "aiReasoningEffort"}), value);
    }
    EXPECT_EQ(shownBy({"settings", "get", "aiModel"}), escaped + "\r\n");
    EXPECT_THAT(shownBy({"settings", "get", "\x1B[2J"}), HasSubstr("there is no setting \"\\u001B[2J\""));
    EXPECT_THAT(shownBy({"serve", "\x1B[2J"}), HasSubstr("\"\\u001B[2J\" was not expected"));
}

TEST_F(Timer, namesEveryEntryThatRuns) {
    ServerProcess server(home.path());
    std::vector<std::string> ids;
    for (const char* title : {"First", "Second", "Third"}) {
        const Json task = server.json("POST", "/api/tasks", Json(Json::Object{{"title", title}}).text());
        ids.push_back(*task.find("id")->asString());
    }
    const auto begin = [&](std::size_t task) {
        const std::string day = std::to_string(task + 1);
        server.json("POST", "/api/time-entries",
                    R"({"startTime": "2026-01-0)" + day + R"(T09:00:00Z", "taskId": ")" + ids[task] + "\"}");
    };
    begin(0);
    begin(1);
    const auto names = [&] { return testing::ContainsRegex("^Second  .*\nFirst  .*\n$"); };
    EXPECT_THAT(outputOf({"timer", "status"}), names());
    const Json status = Json::parse(outputOf({"timer", "status", "--json"}));
    EXPECT_EQ(*status.asArray()->at(0).find("displayName"), Json("Second"));
    EXPECT_EQ(*status.asArray()->at(1).find("displayName"), Json("First"));
    EXPECT_THAT(outputOf({"doctor"}), HasSubstr("\ntimer     ok  Second, First run at once; \"quillorn timer stop "));
    const std::string rest = "Still running: First  [0-9:]+\n\"quillorn timer stop --all\" stops all that runs\n$";
    EXPECT_THAT(outputOf({"timer", "start", ids[2]}),
                testing::ContainsRegex("^Stopped: Second  [0-9:]+\nStarted: Third\n" + rest));
    EXPECT_THAT(outputOf({"timer", "stop"}), testing::ContainsRegex("^Stopped: Third  [0-9:]+\n" + rest));
    begin(1);
    EXPECT_THAT(outputOf({"timer", "stop", "--all"}),
                testing::ContainsRegex("^Stopped: Second  [0-9:]+\nStopped: First  [0-9:]+\n$"));
    EXPECT_EQ(server.json("GET", "/api/time-entries?running=true"), Json(Json::Array{}));
    EXPECT_EQ(run({"timer", "stop", "--all"}).errors, "quillorn: no timer is running\n");
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

TEST_F(Serve, keepsKeysOutOfSight) {
    const auto status = [](const ServerProcess& server, const std::string& key) {
        return server.request("GET", "/api/tasks", "", "Authorization: Bearer " + key + "\r\n").substr(9, 3);
    };
    writeFile(home / "key", "from file\n");
    const std::pair<std::vector<std::string>, const char*> cases[] = {
        {{"--require-auth", "--key", "typed"}, "typed"},
        {{"--require-auth", "--key=typed"}, "typed"},
        {{"--require-auth", "--key-file", home / "key"}, "from file"},
    };
    for (const auto& [options, key] : cases) {
        const ServerProcess server(home.path(), {.arguments = options});
        EXPECT_EQ(status(server, key), "200");
        const std::string line = readFile("/proc/" + std::to_string(server.id()) + "/cmdline");
        EXPECT_THAT(line, AllOf(HasSubstr("--require-auth"), Not(HasSubstr(key))));
    }
    ProgramProcess set(home.path(), {.arguments = {"settings", "set", "apiAuthKey", "--stdin"}});
    set.tell("over the pipe");
    set.closeInput();
    EXPECT_EQ(set.wait(), 0);
    EXPECT_EQ(outputOf({"settings", "get", "apiAuthKey"}), "over the pipe\n");
    for (const char* form : {"--all", "--json"}) {
        EXPECT_THAT(outputOf({"settings", "list", form}), Not(HasSubstr("over the pipe")));
        EXPECT_THAT(outputOf({"settings", "list", form, "--show-keys"}), HasSubstr("over the pipe"));
    }
    EXPECT_EQ(run({"settings", "set", "apiAuthKey", "--generate"}).status, 0);
    EXPECT_THAT(outputOf({"settings", "get", "apiAuthKey"}), testing::MatchesRegex("[0-9a-f]{64}\n"));
}

TEST_F(Serve, refusesSettingsThatItCannotBeSureOf) {
    const std::pair<const char*, const char*> cases[] = {
        {"{", "settings.json: "},
        {"[]", "it is no JSON object; mend it"},
        {R"({"apiRequireAuthLocal": "true"})", "apiRequireAuthLocal has to be true or false"},
        {R"({"apiExternalAccess": 1})", "apiExternalAccess has to be true or false"},
        {R"({"apiAuthKey": 5})", "apiAuthKey has to be a text"},
        {R"({"apiAuthKey": " x"})", "without blanks"},
        {R"({"apiPort": "18080"})", "apiPort has to be a whole number from 1 to 65535"},
        {R"({"apiPort": 70000})", "Port must be between 1 and 65535"},
    };
    const std::filesystem::path file = home / "config/Quillorn/settings.json";
    std::filesystem::create_directories(file.parent_path());
    for (const auto& [content, words] : cases) {
        writeFile(file, content);
        run({"settings", "get", "apiPort"}); // leaves the file where it is
        const Outcome outcome = run({"serve"});
        EXPECT_EQ(outcome.status, 1) << content;
        EXPECT_THAT(outcome.errors, HasSubstr(words)) << content;
        EXPECT_THAT(outputOf({"doctor"}), HasSubstr("settings  !!")) << content;
    }
    writeFile(file, R"({"apiPrt": 1})");
    EXPECT_THAT(outputOf({"doctor"}), HasSubstr("there is no setting apiPrt; did you mean \"apiPort\"?; \"quillorn "
                                                "settings reset apiPrt\" mends it"));
    run({"settings", "reset", "apiPrt"});
    EXPECT_EQ(readFile(file), "{}\n");
}

TEST_F(Serve, saysWhyItCannotStart) {
    const auto first = std::make_unique<ServerProcess>(home.path());
    const auto refusal = [&](std::vector<std::string> arguments) {
        arguments.insert(arguments.begin(), "serve");
        const Outcome outcome = run(arguments);
        EXPECT_EQ(outcome.status, 1);
        return outcome.errors;
    };
    EXPECT_THAT(
        refusal({"--port", std::to_string(first->port())}),
        testing::MatchesRegex("Failed to start API server: bindFailed.\"Address already in use\".; another program "
                              "listens on port [0-9]+: stop it, or choose another port\n"));
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
