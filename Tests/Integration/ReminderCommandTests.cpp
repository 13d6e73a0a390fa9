#include "Integration/ProgramTest.h"
#include "Platform/Json.h"
#include "Support/ScriptedServer.h"

#include <fmt/core.h>
#include <gmock/gmock.h>

namespace quillorn {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::StartsWith;

struct ReminderCommands : ProgramTest {
    ReminderCommands() {
        toDo("jobs", "a", "Call Anna");
        toDo("jobs", "b", "Buy milk");
        toDo("home", "c", "Water plants");
        run({"settings", "set", "reminderFolderPath", (home / "lists").string()});
        run({"settings", "set", "aiEndpoint", ai.url()});
        run({"settings", "set", "aiModel", "m"});
    }
    void toDo(const std::string& list, const std::string& uid, const std::string& title) {
        const auto folder = home / "lists" / list;
        std::filesystem::create_directories(folder);
        writeFile(
            folder / (uid + ".ics"),
            fmt::format("BEGIN:VCALENDAR\nBEGIN:VTODO\nUID:{}\nSUMMARY:{}\nEND:VTODO\nEND:VCALENDAR\n", uid, title));
    }
    void answer(const std::string& items) {
        const Json message = Json::Object{{"content", R"({"items":[)" + items + "]}"}};
        const Json choice = Json::Object{{"message", message}};
        ai.expect({ScriptedServer::answer(200, Json(Json::Object{{"choices", Json::Array{choice}}}).text())});
    }
    std::string project(const std::string& name) {
        const ServerProcess server(home.path());
        return *server.json("POST", "/api/projects", fmt::format(R"({{"name": "{}"}})", name)).find("id")->asString();
    }

    ScriptedServer ai;
};

TEST_F(ReminderCommands, importWhatTheAIOrAPersonChooses) {
    EXPECT_EQ(outputOf({"reminders", "lists"}), "[ ]     1  home\n[ ]     2  jobs\n");
    EXPECT_EQ(run({"reminders", "run"}).output, "No lists selected\n");
    const Outcome wrong = run({"reminders", "choose", "jops"});
    EXPECT_TRUE(wrong.status == 1 &&
                wrong.errors.find("there is no list \"jops\"; there are: home, jobs") != std::string::npos);
    EXPECT_EQ(run({"reminders", "choose", "jobs"}).status, 0);
    const std::string site = project("Site");
    answer(R"({"reminder_id":"a","is_project_item":true,"task_title":"Call Anna","confidence":0.9,"project_id":")" +
           site + "\"}");
    const Outcome imported = run({"reminders", "run"});
    EXPECT_EQ(imported.output, "Checked 2 new: imported 1, skipped 1\n");
    EXPECT_EQ(imported.errors, "Reading reminders…\nAsking AI (1/1)…\n");
    EXPECT_THAT(readFile(home / "lists/jobs/a.ics"), HasSubstr("STATUS:COMPLETED"));
    EXPECT_THAT(outputOf({"reminders", "status"}),
                AllOf(HasSubstr("Lists      jobs\n"), HasSubstr("Call Anna → Site")));

    answer("");
    Json review = Json::parse(outputOf({"reminders", "review", "--json"}));
    Json& row = review.asObject()->at("rows").asArray()->at(0);
    EXPECT_EQ(*row.find("skipReason"), Json("AI returned no decision"));
    row.asObject()->at("include") = true;
    row.asObject()->at("projectID") = site;
    writeFile(home / "rows.json", review.text());
    EXPECT_EQ(outputOf({"reminders", "import", (home / "rows.json").string()}),
              "Created 1 task, completed 1 reminder\n");
    const Outcome again = run({"reminders", "import", (home / "rows.json").string()});
    EXPECT_EQ(again.status, 1);
    EXPECT_THAT(again.errors, HasSubstr("no open reminder of these lists, or imported already: \"b\""));
    EXPECT_THAT(readFile(home / "lists/jobs/b.ics"), HasSubstr("STATUS:COMPLETED"));
    EXPECT_EQ(outputOf({"reminders", "recheck"}), "0 reminders will be sent to the AI again on the next run\n");
    EXPECT_EQ(run({"reminders", "review"}).status, 1);
}

TEST_F(ReminderCommands, remindAndUpdateSayWhatTheyDid) {
    project("Site");
    const Json made =
        Json::parse(outputOf({"remind", "Call", "Anna", "--list", "SITE", "--due", "2026-02-01", "--flag", "--json"}));
    EXPECT_EQ(*made.find("sentence"), Json("Added “Call Anna” to Site in Quillorn, due Feb 1, 2026."));
    const std::string id = *made.find("taskId")->asString();
    EXPECT_EQ(outputOf({"remind-update", id, "--list", "Inbox"}), "Moved “Call Anna” to Inbox in Quillorn.\n");
    EXPECT_EQ(outputOf({"remind-update", id, "--done"}), "Marked “Call Anna” as done in Quillorn.\n");
    for (const auto& [arguments, words] : std::vector<std::pair<std::vector<std::string>, const char*>>{
             {{"remind", "x", "--list", "Nope"}, "there is no list \"Nope\""},
             {{"remind", " "}, "What should the reminder say?"},
             {{"remind", "x", "--due", "soon"}, "\"soon\" is no date"},
             {{"remind-update", "x"}, "\"x\" is no task id"},
             {{"remind-update", "00000000-0000-0000-0000-000000000000", "--done"},
              "That task isn't in Quillorn anymore."}}) {
        const Outcome outcome = run(arguments);
        EXPECT_EQ(outcome.status, 1) << words;
        EXPECT_THAT(outcome.errors, HasSubstr(words));
    }
}

} // namespace
} // namespace quillorn
