#include "Platform/Background.h"
#include "Platform/Calendar.h"
#include "Platform/HttpClient.h"
#include "Platform/Json.h"
#include "Platform/Linux/SystemdBus.h"
#include "Platform/Text.h"
#include "Reminders/LoopbackModel.h"
#include "Reminders/ReminderRowJson.h"
#include "Reminders/RemindersBusService.h"
#include "Reminders/SiriProjectRouter.h"
#include "Support/BusDaemon.h"
#include "Support/FakeClock.h"
#include "Support/MemorySettings.h"
#include "Support/ScopedEnvironment.h"
#include "Support/ScriptedServer.h"
#include "Support/TaskRunner.h"
#include "Support/TestRecords.h"
#include "Support/TestStore.h"

#include <gmock/gmock.h>

namespace quillorn {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::StartsWith;
using List = BusValue::List;
using Dictionary = BusValue::Dictionary;

struct Surfaces : testing::Test, TestStore, TaskRunner {
    Surfaces() {
        change(*container, [&](ModelContext& context) {
            auto& made = make<Project>(context, {.name = "Site"});
            made.setClient(&make<Client>(context, {.name = "Acme"}));
            site = made.id();
            other = make<Project>(context, {.name = "Shop"}).id();
        });
    }

    FakeClock clock;
    Calendar calendar{"Europe/Berlin", "en_US"};
    Text text{"en_US"};
    MemorySettings settings;
    Background background{loop};
    HttpClient client{loop};
    LoopbackModel model{client, settings};
    SiriProjectRouter router{model, loop, TaskRunner::log};
    ReminderIntents intents{{container.get(), background, clock, calendar, text, settings, router}};
    UUID site, other;
};

TEST_F(Surfaces, otherProgramsCallTheIntentsOverTheBus) {
    const BusDaemon daemon;
    SystemdBus served(BusKind::session, daemon.address(), loop, nullptr);
    SystemdBus caller(BusKind::session, daemon.address(), loop, nullptr);
    const RemindersBusService service(served, intents, calendar);
    const auto call = [&](const std::string& member, BusMessage message) {
        std::optional<BusReply> reply;
        // Started by nobody, so it may take a moment until there is somebody to ask.
        do {
            const Observation token = caller.call({RemindersBusService::serviceName, RemindersBusService::objectPath,
                                                   RemindersBusService::interfaceName, member, message},
                                                  [&](const BusReply& got) {
                                                      reply = got;
                                                      loop.stop();
                                                  });
            loop.run();
        } while (reply->error() && reply->error()->name() == "org.freedesktop.DBus.Error.ServiceUnknown");
        return *reply;
    };
    const BusReply lists = call("SuggestedLists", {});
    EXPECT_EQ(lists.message().values,
              (List{List{List{"00000000-0000-0000-0000-00000000C11E", "Inbox", ""}, List{site.string(), "Site", "Acme"},
                         List{other.string(), "Shop", ""}}}));
    const BusMessage created = call("CreateReminder", {"sa{sv}",
                                                       {"Call", Dictionary{{"list", site.string()},
                                                                           {"note", "n"},
                                                                           {"dueDate", "2026-02-01"},
                                                                           {"isFlagged", true},
                                                                           {"tags", List{"x"}},
                                                                           {"urls", List{"https://u"}},
                                                                           {"recurrence", "daily"},
                                                                           {"images", List{"a", "b"}},
                                                                           {"section", "s"}}}})
                                   .message();
    EXPECT_EQ(
        created.values.at(0),
        BusValue("Added “Call” to Acme › Site in Quillorn, due Feb 1, 2026. Quillorn doesn't keep repeat schedules "
                 "or images, so I left that off. There's no Quillorn tag named “x”."));
    const std::string id = *created.values.at(1).asString();
    EXPECT_EQ(call("UpdateReminder", {"sa{sv}", {id, Dictionary{{"isCompleted", true}, {"title", "Called"}}}})
                  .message()
                  .values,
              List{"Marked “Called” as done in Quillorn."});
    EXPECT_EQ(call("FindReminders", {"s", {"CALL"}}).message().values, (List{List{List{id, "Called"}}}));

    const std::tuple<const char*, const char*, Dictionary, const char*> faults[] = {
        {"CreateReminder", " \n", {}, "TitleMissing: What should the reminder say?"},
        {"CreateReminder", "t", {{"colour", "red"}}, "BadParameter: there is no parameter \"colour\""},
        {"CreateReminder", "t", {{"isCompleted", true}}, "BadParameter: there is no parameter \"isCompleted\""},
        {"CreateReminder", "t", {{"dueDate", "soon"}}, "BadParameter: dueDate must be a date such as"},
        {"CreateReminder", "t", {{"isFlagged", 1}}, "BadParameter: isFlagged must be true or false"},
        {"CreateReminder", "t", {{"tags", "x"}}, "BadParameter: tags must be a list"},
        {"CreateReminder", "t", {{"urls", List{List{}}}}, "BadParameter: urls must be a text"},
        {"CreateReminder", "t", {{"list", "Site"}}, "BadParameter: list must be an id"},
        {"CreateReminder", "t", {{"note", std::string(2 << 20, 'x')}}, "BadParameter: note is too long"},
        {"UpdateReminder", "t", {}, "BadParameter: taskId must be an id"},
        {"UpdateReminder",
         "00000000-0000-0000-0000-000000000000",
         {},
         "TaskNotFound: That task isn't in Quillorn anymore."},
    };
    for (const auto& [member, first, parameters, expected] : faults) {
        const BusReply reply = call(member, {"sa{sv}", {first, parameters}});
        ASSERT_TRUE(reply.error()) << expected;
        EXPECT_THAT(reply.error()->name() + ": " + reply.error()->what(),
                    StartsWith("com.quillorn.Error." + std::string(expected)));
    }
}

TEST_F(Surfaces, aModelOnThisMachineIsAskedAndNobodyElse) {
    for (const auto& [url, isLoopback] :
         std::vector<std::pair<std::string, bool>>{{"http://localhost:1234/v1", true},
                                                   {"https://127.1.2.3", true},
                                                   {"http://[::1]:80/v1", true},
                                                   {"http://LOCALHOST", true},
                                                   {"", false},
                                                   {"ftp://localhost", false},
                                                   {"http://localhost.example.org", false},
                                                   {"http://127.0.0.1.x", false},
                                                   {"http://localhost@evil.example", false},
                                                   {"http://0.0.0.0", false},
                                                   {"http://192.168.1.1", false},
                                                   {"http://[::ffff:127.0.0.1]", false},
                                                   {"localhost:1234", false},
                                                   {"http://128.0.0.1", false}})
        EXPECT_EQ(isLoopbackURL(url), isLoopback) << url;

    ScriptedServer server;
    settings.set("voiceRoutingEndpoint", server.url() + "/v1/");
    settings.set("aiModel", "small");
    settings.set("aiApiKey", "secret");
    const ScopedEnvironment proxy("http_proxy", "http://127.0.0.1:1");
    const auto create = [&] { return result([&] { return intents.create({.title = "Ship it"}); }).sentence; };
    const auto answer = [&](const std::string& content) {
        const Json message = Json::Object{{"content", content}};
        const Json choice = Json::Object{{"message", message}};
        server.expect({ScriptedServer::answer(200, Json(Json::Object{{"choices", Json::Array{choice}}}).text())});
    };
    answer(R"({"project": "Shop"})");
    EXPECT_EQ(create(), "Added “Ship it” to Shop in Quillorn.");
    answer(R"({"project": "None"})");
    EXPECT_EQ(create(), "Added “Ship it” to Quillorn.");
    const std::vector<HttpRequest> requests = server.requests(2);
    EXPECT_EQ(requests[0].path, "/v1/chat/completions");
    EXPECT_FALSE(requests[0].headers.contains("authorization"));
    EXPECT_THAT(requests[0].body,
                AllOf(HasSubstr(R"("enum":["None","Acme › Site","Shop"])"), HasSubstr(R"("model":"small")"),
                      HasSubstr(R"("name":"Filing")"), HasSubstr(R"("required":["project"])")));
    for (const auto& bad : {ScriptedServer::answer(302, "", "Location: " + server.url() + "/v1/chat/completions\r\n"),
                            ScriptedServer::answer(500, "broken"), ScriptedServer::answer(200, "no JSON")}) {
        server.expect({bad});
        EXPECT_EQ(create(), "Added “Ship it” to Quillorn.");
    }
    EXPECT_EQ(server.requests(5).size(), 5U);
    EXPECT_THAT(TaskRunner::log.lines(), ElementsAre("SiriProjectRouter: not filed (HTTP error 302)",
                                                     "SiriProjectRouter: not filed (HTTP error 500)",
                                                     StartsWith("SiriProjectRouter: not filed (")));
}

TEST(ReminderRowJson, readsWhatItWritesAndChecksTheWhole) {
    const ReminderImportRow row{.reminder = {.id = "a", .title = "A"}, .title = "T", .include = true};
    const Json json = jsonOf(ReminderRows{{"Work"}, {row}});
    const ReminderRows read = readReminderRows(json);
    EXPECT_EQ(jsonOf(ReminderRows{read.lists, {row}}), json);
    EXPECT_TRUE(read.rows.at(0).reminder.id == "a" && read.rows[0].title == "T" && read.rows[0].include);

    const std::pair<const char*, const char*> faults[] = {
        {R"([])", "the file must be an object"},
        {R"({"rows": []})", "the file.lists is missing"},
        {R"({"lists": [1], "rows": []})", "the file.lists must be a list of texts"},
        {R"({"lists": [], "rows": [], "x": 1})", "the file has the unknown key \"x\""},
        {R"({"lists": [], "rows": [{"title": "t", "include": true}]})", "rows[0].reminder is missing"},
        {R"({"lists": [], "rows": [{"reminder": {"id": 1}, "title": "t", "include": true}]})",
         "rows[0].reminder.id must be a text"},
        {R"({"lists": [], "rows": [{"reminder": {"id": "a"}, "title": "t", "include": 1}]})",
         "rows[0].include must be true or false"},
        {R"({"lists": [], "rows": [{"reminder": {"id": "a"}, "title": "t", "include": true, "priority": 4}]})",
         "rows[0].priority must be a whole number from 0 to 3"},
        {R"({"lists": [], "rows": [{"reminder": {"id": "a"}, "title": "t", "include": true, "projectID": "x"}]})",
         "rows[0].projectID must be the id of a project"},
        {R"({"lists": [], "rows": [{"reminder": {"id": "a"}, "title": "t", "include": true},
                                   {"reminder": {"id": "a"}, "title": "t", "include": true}]})",
         "rows[1] is of the same reminder as a row before it"},
    };
    for (const auto& [text, words] : faults)
        try {
            readReminderRows(Json::parse(text));
            ADD_FAILURE() << words;
        } catch (const ReminderRowError& error) {
            EXPECT_STREQ(error.what(), words);
        }
    std::vector<ReminderImportRow> rows{row};
    bindRows(rows, {{.id = "a", .title = "As it is now"}});
    EXPECT_EQ(rows[0].reminder.title, "As it is now");
    EXPECT_THROW(bindRows(rows, {}), ReminderRowError);
}

} // namespace
} // namespace quillorn
