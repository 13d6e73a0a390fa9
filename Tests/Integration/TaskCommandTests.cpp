#include "Integration/ProgramTest.h"
#include "Platform/Json.h"

#include <gmock/gmock.h>
#include <sstream>

namespace quillorn {
namespace {

using testing::ContainsRegex;
using testing::MatchesRegex;

/// Commands as one types them, words parted by "|", one after the other on the same store.
struct TaskCommands : ProgramTest {
    struct Step {
        const char* command;
        int status;
        /// Regular expressions; an id is written ID.
        const char* output;
        const char* errors = "";
        const char* input = "";
    };

    static std::vector<std::string> split(const std::string& text) {
        std::vector<std::string> words;
        std::istringstream stream(text);
        for (std::string word; std::getline(stream, word, '|');)
            words.push_back(word);
        return words;
    }
    static std::string expression(std::string text) {
        for (std::size_t at = 0; (at = text.find("ID", at)) != std::string::npos;)
            text.replace(at, 2, "[0-9A-F-]{36}");
        return text;
    }
    void check(const std::vector<Step>& steps) const {
        for (const Step& step : steps) {
            ProgramProcess program(home.path(), {.arguments = split(step.command)});
            program.tell(step.input);
            program.closeInput();
            EXPECT_EQ(program.wait(), step.status) << step.command << program.errors();
            EXPECT_THAT(program.output(), MatchesRegex(expression(step.output))) << step.command;
            EXPECT_THAT(program.errors(), MatchesRegex(expression(step.errors))) << step.command;
        }
    }
};

TEST_F(TaskCommands, workOnTasksByTheirNames) {
    check({
        // clang-format off
        {"add|Write|the|offer|--due|2031-01-31 15:00|--priority|HIGH", 0, "Added: Write the offer  due Jan 31, 2031 15:00  High  [0-9A-F]{8}\n"},
        {"add|Pay 2031-02-01 !urgent #no @one", 0, "Added: Pay #no @one  due Feb 1, 2031  Urgent  .*"},
        {"add|--plain|Pay tomorrow\tor\nnever", 0, "Added: Pay tomorrow\tor\nnever  Medium  .*"},
        {"add|Draft|--parent|the OFFER|--description|Two pages", 0, "Added: Draft  Medium  .*"},
        {"list|--sort|title", 0, "ID\tDraft\ttodo\tmedium\t\t\t\nID\tPay #no @one\ttodo\turgent\t2031-02-01\t\t\nID\tPay tomorrow\\\\tor\\\\nnever\ttodo\tmedium\t\t\t\n"
                                 "ID\tWrite the offer\ttodo\thigh\t2031-01-31T15:00:00Z\t\t\n"},
        {"list|--group|due|--limit|1", 0, "later\tID\tWrite the offer\t.*"}, {"list|--search|TWO pages", 0, "ID\tDraft\t[^\n]*\n"},
        {"list|today", 0, ""}, {"list|upcoming|--json", 0, "\\[\\]\n"}, {"list|tomorrow", 2, "", ".*today.*"},
        {"done|pay", 1, "", "quillorn: pay: several tasks fit:\n  ID  Pay #no @one\n  ID  Pay tomorrow\\\\tor\\\\nnever\n"},
        {"done|nothing|draft|zzz|draft", 1, "Done: Draft\n", "quillorn: nothing: there is no such task\nquillorn: zzz: there is no such task\n"},
        {"add|--plain|Draft", 0, ".*"}, {"edit|draft|--status|In progress|--due|none", 0, "Changed: Draft\n"},
        {"list|today", 0, "ID\tDraft\tinProgress\tmedium\t\t\t\n"}, {"list|--completed|--search|draft", 0, "ID\tDraft\tdone\t.*ID\tDraft\tinProgress\t.*"},
        {"done|-", 0, "Done: Draft\n", "", "Draft\tand what else a line has"}, {"reopen|draft", 1, "", "quillorn: draft: several .*"},
        {"edit|offer", 2, "", "--title or .* is required\n.*"}, {"edit|offer|--title| ", 1, "", "quillorn: title cannot be empty\n"},
        {"edit|offer|--priority|huge", 1, "", "quillorn: there is no priority \"huge\"; there are: low, medium, high, urgent\n"},
        {"edit|offer|--due|soon", 1, "", "quillorn: \"soon\" is no date; .*"}, {"edit|offer|--source-url|file:///x", 1, "", ".*not allowed\n"},
        {"move|offer|--parent|offer", 1, "", "quillorn: offer: a task can't stand under itself\n"},
        {"move|urgent", 2, "", "--project or .*"}, {"move|offer|--project|x", 1, "", "quillorn: there is no project \"x\"\n"},
        {"retag|offer|--add|x", 1, "", "quillorn: there is no tag \"x\"\n"}, {"add|x|--tag|y", 1, "", "quillorn: there is no tag \"y\"\n"},
        {"add|x|--ai", 1, "", "quillorn: --ai needs an AI server.*"}, {"add| ", 1, "", "quillorn: title cannot be empty\n"},
        {"comment|offer|Ask| Anna\n", 0, "Commented: Write the offer\n"}, {"comment|offer| ", 1, "", "quillorn: the comment is blank\n"},
        {"duplicate|offer", 0, "Added: Write the offer \\(Copy\\)\n"}, {"delete|offer", 1, "", "quillorn: offer: several tasks fit:.*"},
        {"delete|write the offer", 1, "", "quillorn: deleting can't be undone; .* needs --yes\n"},
        {"show|write the offer", 0, "Title\tWrite the offer\nId\tID\nStatus\ttodo\nPriority\thigh\nDue\t2031-01-31T15:00:00Z\nCreated\t.*Z\n"},
        {"delete|Write the offer|pay #no|--yes", 0, "Deleted: Write the offer\nDeleted: Pay #no @one\n"}, {"show|pay #no", 1, "", "quillorn: there is no task \"pay #no\"\n"},
        // clang-format on
    });
}

TEST_F(TaskCommands, keepTheRecordsAroundTasks) {
    check({
        // clang-format off
        {"client|add|Acme|--color|#FF9500", 0, "Added: Acme\n"}, {"client|add|Beta|&|Co", 0, "Added: Beta & Co\n"}, {"client|add| ", 1, "", ".*name cannot be empty\n"},
        {"project|add|Site|--client|acme", 0, "Added: Site\n"}, {"project|add|Shop|--client|acme", 0, ".*"}, {"project|add|X|--client|no", 1, "", ".*no client \"no\"\n"},
        {"group|add|Web|--client|acme", 0, "Added: Web\n"}, {"group|add| ", 1, "", ".*name cannot be empty\n"},
        {"project|order|shop|site|--group|web", 0, "Moved: Shop\nMoved: Site\n"}, {"group|list|--json", 0, ".*\"projectIds\": \\[\n    +\"ID\",\n    +\"ID\"\n.*"},
        {"project|order|site|--up|--down", 2, "", ".*"}, {"project|order|site", 1, "", ".*say where to.*"}, {"project|order|site|--first", 0, "Moved: Site\n"},
        {"project|add|Blog|--group|web", 1, "", ".*another client\n"}, {"project|list|--client|acme", 0, "ID\tShop\tAcme\tWeb\t0\t0\t0\tfalse\nID\tSite\tAcme\tWeb\t0\t0\t0\tfalse\n"},
        {"group|edit|web|--name|Net", 0, "Changed: Net\n"}, {"group|delete|net|--yes", 0, "Deleted: Net\n"}, {"project|list|--client|acme", 0, ".*Shop\tAcme\t\t.*Site\tAcme\t\t.*"},
        {"project|edit|shop|--no-client|--name|Store", 0, "Changed: Store\n"}, {"project|list|--no-client", 0, "ID\tStore\t\t[^\n]*\n"},
        {"client|archive|beta", 0, "Archived: Beta & Co\n"}, {"client|list", 0, "ID\tAcme\t1\t0\t0\tfalse\n"}, {"client|list|--archived", 0, ".*Acme.*Beta & Co\t0\t0\t0\ttrue\n"},
        {"client|unarchive|BETA|nobody", 1, "Unarchived: Beta & Co\n", "quillorn: nobody: there is no such client\n"}, {"client|show|acme", 0, "Name\tAcme\nId\tID\nColor\t#FF9500\n.*"},
        {"tag|add|phone", 0, "Added: phone\n"}, {"tag|edit|phone|--color|red", 1, "", ".*hex color.*"}, {"add|Call #phone @Site", 0, "Added: Call  Medium  @Site  #phone  .*"},
        {"tag|list", 0, "ID\tphone\t#007AFF\t1\n"}, {"list|--tag|phone", 0, "ID\tCall\ttodo\tmedium\t\tSite\tphone\n"}, {"tag|delete|phone|--yes", 0, "Deleted: phone\n"},
        {"note|add|Kick-off|--content|Blue|--project|site", 0, "Added: Kick-off\n"}, {"note|edit|kick|--content|-|--pin", 0, "Changed: Kick-off\n", "", "Red"},
        {"note|show|kick", 0, "Title\tKick-off\n.*Pinned\ttrue\nContent\tRed\n"}, {"note|edit|kick", 1, "", ".*set VISUAL or EDITOR.*"}, {"note|list|--search|blue", 0, ""},
        {"project|delete|site", 1, "", ".*needs --yes\n"}, {"project|delete|site|--yes", 0, "Deleted: Site\n"}, {"note|list", 0, ""}, {"list", 0, ""},
        {"client|delete|acme|beta|--yes|--json", 0, ".*\"name\": \"Acme\".*\"name\": \"Beta & Co\".*"}, {"client|list|--archived", 0, ""},
        // clang-format on
    });
}

TEST_F(TaskCommands, changeNotesInTheEditorOfTheUser) {
    outputOf({"note", "add", "Kick-off", "--content", "Blue"});
    const auto edit = [&](const std::string& editor) {
        ProgramProcess program(home.path(), {.arguments = {"note", "edit", "kick"},
                                             .environment = std::map<std::string, std::string>{{"EDITOR", editor}}});
        const int status = program.wait();
        return Outcome{status, program.output(), program.errors()};
    };
    const auto content = [&] { return *Json::parse(outputOf({"note", "show", "kick", "--json"})).find("content"); };
    EXPECT_EQ(edit("sed -i s/Blue/Green/").output, "Changed: Kick-off\n");
    EXPECT_EQ(content(), Json("Green"));
    EXPECT_EQ(edit("true").output, "Unchanged: Kick-off\n");
    for (const char* editor : {"false", "/no/such", "rm", "printf '\\377' >"})
        EXPECT_EQ(edit(editor).status, 1) << editor;
    EXPECT_EQ(content(), Json("Green"));
    // Nothing is lost where somebody else was faster.
    const std::string racing = QUILLORN_PROGRAM " note edit kick --content Red >&2; sed -i s/Green/Yellow/";
    const std::string words = edit(racing).errors;
    EXPECT_EQ(content(), Json("Red"));
    const std::size_t file = words.find("Your text is in ");
    ASSERT_NE(file, std::string::npos) << words;
    EXPECT_EQ(readFile(words.substr(file + 16, words.rfind('\n') - file - 16)), "Yellow");
}

TEST_F(TaskCommands, printTheRecordsOfTheServer) {
    ServerProcess server(home.path());
    const std::string client = *server.json("POST", "/api/clients", R"({"name": "Acme"})").find("id")->asString();
    const Json project = server.json("POST", "/api/projects", R"({"name": "Site", "clientId": ")" + client + R"("})");
    server.json("POST", "/api/tags", R"({"name": "phone"})");
    run({"settings", "set", "defaultPriority", "3"});
    Json made = Json::parse(outputOf({"add", "Call Bob 2031-01-31 #phone @site", "--json"}));
    Json& task = made.asArray()->at(0);
    const std::string id = *task.find("id")->asString();
    EXPECT_EQ(*task.find("clientName"), Json("Acme"));
    EXPECT_EQ(*task.find("clientId"), Json(client));
    EXPECT_EQ(*task.find("projectName"), Json("Site"));
    EXPECT_EQ(*task.find("dueHasTime"), Json(false));
    EXPECT_EQ(*task.find("priority"), Json(3));
    EXPECT_EQ(Json::parse(outputOf({"list", "--client", "acme", "--project", "site", "--tag", "phone", "--json"})),
              made);
    const Json groups = Json::parse(outputOf({"list", "--group", "tag", "--json"}));
    EXPECT_EQ(*groups.asArray()->at(0).find("title"), Json("phone"));
    EXPECT_EQ(*groups.asArray()->at(0).find("tasks"), made);
    for (const char* name : {"clientName", "clientId", "projectName", "dueHasTime"})
        task.asObject()->erase(name);
    EXPECT_EQ(task, server.json("GET", "/api/tasks/" + id));
    outputOf({"comment", id.substr(0, 6), "Left", "a", "message"});
    outputOf({"add", "Look up the number", "--parent", id});
    server.json("POST", "/api/time-entries", R"({"taskId": ")" + id + "\"}");
    const Json whole = Json::parse(outputOf({"show", id, "--json"}));
    EXPECT_EQ(*whole.find("comments")->asArray()->at(0).find("content"), Json("Left a message"));
    EXPECT_EQ(*whole.find("subtasks")->asArray()->at(0).find("projectName"), Json("Site"));
    EXPECT_EQ(whole.find("timeEntries")->asArray()->size(), 1U);
    Json ended = Json::parse(outputOf({"done", "call", "--json"}));
    EXPECT_EQ(*ended.asArray()->at(0).find("isCompleted"), Json(true));
    EXPECT_EQ(server.json("GET", "/api/time-entries?running=true"), Json(Json::Array{}));
    EXPECT_EQ(outputOf({"move", id, "--no-project"}), "Moved: Call Bob\n");
    EXPECT_EQ(outputOf({"retag", id, "--remove", "phone"}), "Tagged: Call Bob\n");
    EXPECT_EQ(server.json("GET", "/api/tasks/" + id).find("projectId"), nullptr);
    EXPECT_EQ(
        Json::parse(outputOf({"delete", id, "--yes", "--json"})).asArray()->at(0).find("title")->asString()->size(),
        8U);
    EXPECT_EQ(server.json("GET", "/api/tasks").asArray()->size(), 1U);
}

} // namespace
} // namespace quillorn
