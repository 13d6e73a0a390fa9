#include "Views/AIChatView.h"

#include "Models/Settings.h"
#include "Support/ModelTest.h"
#include "Support/TestRecords.h"
#include "Views/ReportRangePicker.h"

#include <fmt/core.h>
#include <gmock/gmock.h>

namespace quillorn {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Optional;
using testing::StartsWith;
using namespace std::chrono_literals;
using Server = ScriptedServer;

struct AIChatViews : ModelTest {
    AIChatViews() {
        project.setClient(&acme);
        make<ProjectTask>(mainContext, {.title = "Build", .project = &project});
        mainContext.save();
    }

    /// Sends, and waits for the end.
    void ask(const std::string& question) {
        view.setInputText(question);
        view.send();
        until([&] { return !view.isStreaming() && !view.streamingMessageID(); });
    }
    /// "user: Hi", and so on.
    std::vector<std::string> said(const AIChatView& of) {
        std::vector<std::string> all;
        for (const auto& message : of.messages())
            all.push_back(
                fmt::format("{}: {}", message.role == ChatRole::user ? "user" : "assistant", message.content));
        return all;
    }
    std::vector<std::string> said() { return said(view); }

    Client& acme = make<Client>(mainContext, {.name = "Acme"});
    Project& project = make<Project>(mainContext, {.name = "Site", .projectDescription = "Web"});
    AIChatView view{environment, ChatContext::of(project)};
    const std::string listTasks = chat::call(0, "a", "list_tasks", "");
    const std::string tools = chat::finish("tool_calls");
};

TEST_F(AIChatViews, sendTheConversationAndKeepTheAnswer) {
    server.expect(chat::stream({chat::text("Hel"), chat::text("lo"), chat::done}));
    ask("  Hi \n");
    EXPECT_EQ(view.inputText(), "");
    server.expect(chat::stream({}));
    ask("Again");
    EXPECT_THAT(said(), ElementsAre("user: Hi", "assistant: Hello", "user: Again", "assistant: "));
    EXPECT_EQ(
        Json(sent(1)).text(),
        R"([{"content":"You are an AI assistant for the project 'Site'. Project description: Web Use the available )"
        R"(tools to look up tasks, notes, time entries, and other project data when needed. Today is January 15, )"
        R"(2026.","role":"system"},{"content":"Hi","role":"user"},{"content":"Hello","role":"assistant"},)"
        R"({"content":"Again","role":"user"}])");
    ModelContext later(*store.container);
    AIEnvironment again{client, settings, later, queue, clock, calendar, text};
    EXPECT_EQ(said(AIChatView(again, ChatContext::of(project))).size(), 4U);
    AIChatView other(again, ChatContext::of(acme));
    EXPECT_THAT(said(other), IsEmpty());
    server.expect(chat::stream({}));
    other.sendSuggestion(other.suggestions().front());
    EXPECT_THAT(sent(2).front().text(),
                HasSubstr("for the client 'Acme' which has 1 active project. Use the available tools to look up data "
                          "across their projects. Today is"));
    EXPECT_THAT(said(other).front(), "user: Summarize all project statuses");
}

TEST_F(AIChatViews, runTheToolsThatTheModelAsksFor) {
    const std::string pieces = chat::call(1, "b", "get_time_summary", "{\"da") + chat::call(1, "", "", "ys\":3}") +
                               chat::call(-7, "c", "nothing", "") + listTasks;
    server.expect(chat::stream({chat::text("Let me see. "), pieces, tools}));
    server.expect(chat::stream({chat::text("Done.")}));
    make<ProjectTask>(mainContext, {.title = "Not saved yet", .project = &project});
    ask("How is it?");
    EXPECT_EQ(said().back(), "assistant: Let me see. Done.");
    const Json::Array messages = sent(1);
    ASSERT_EQ(messages.size(), 6U);
    EXPECT_EQ(messages[2].text(),
              R"({"content":"Let me see. ","role":"assistant","tool_calls":[)"
              R"({"function":{"arguments":"","name":"nothing"},"id":"c","type":"function"},)"
              R"({"function":{"arguments":"","name":"list_tasks"},"id":"a","type":"function"},)"
              R"({"function":{"arguments":"{\"days\":3}","name":"get_time_summary"},"id":"b","type":"function"}]})");
    EXPECT_EQ(messages[3].text(),
              R"({"content":"{\"error\":\"Unknown tool: nothing\"}","role":"tool","tool_call_id":"c"})");
    EXPECT_THAT(messages[4].text(), AllOf(HasSubstr("Build"), HasSubstr("Not saved yet")));
    EXPECT_EQ(*messages[5].find("tool_call_id")->asString(), "b");
}

TEST_F(AIChatViews, endWhenTheModelHasAskedEnough) {
    server.standBy(chat::stream({chat::text("."), listTasks, tools}));
    ask("Loop");
    EXPECT_EQ(said().back(), "assistant: " + std::string(16, '.'));
    const auto requests = server.requests();
    ASSERT_EQ(requests.size(), 16U);
    EXPECT_THAT(requests[14].body, HasSubstr("\"tools\":["));
    EXPECT_THAT(requests[15].body, testing::Not(HasSubstr("\"tools\":[")));
    // Without a word that they are meant, calls are dropped; and a word without calls is the end.
    server.expect(chat::stream({chat::text("x"), listTasks, chat::finish("stop")}));
    ask("Drop");
    server.expect(chat::stream({chat::text("y"), tools}));
    ask("None");
    EXPECT_EQ(said().back(), "assistant: y");
    std::string many;
    for (int i = 0; i < 500; ++i)
        many += chat::call(i * 3, fmt::format("id{}", i), "list_tasks", "{\"limit\":1}");
    server.expect(chat::stream({many, tools}));
    server.expect(chat::stream({chat::text("z")}));
    ask("Many");
    EXPECT_EQ(server.requests().size(), 20U);
    EXPECT_EQ(*sent(19).back().find("tool_call_id")->asString(), "id499");
}

TEST_F(AIChatViews, keepWhatCameBeforeAFailure) {
    view.setInputText("Hi");
    server.expect({Server::answer(503, "busy")});
    ask("Hi");
    EXPECT_THAT(view.error(), Optional(std::string("HTTP error 503: busy")));
    EXPECT_EQ(view.inputText(), "Hi");
    EXPECT_THAT(said(), ElementsAre("user: Hi"));
    server.expect({Server::answer(200, chat::text("Hal"), "Content-Length: 9999\r\n")});
    ask("Hi");
    EXPECT_THAT(said(), ElementsAre("user: Hi", "user: Hi", "assistant: Hal"));
    EXPECT_TRUE(view.error());
    EXPECT_EQ(view.inputText(), "");
    view.dismissError();
    EXPECT_FALSE(view.error());
    // A round that fails behind tools fails the whole.
    server.expect(chat::stream({listTasks, tools}));
    server.expect({Server::answer(500, "")});
    ask("More");
    EXPECT_THAT(view.error(), Optional(std::string("HTTP error 500")));
    mainContext.remove(project);
    mainContext.save();
    ask("Where?");
    EXPECT_TRUE(view.error());
}

TEST_F(AIChatViews, showTheAnswerWhileItGrowsAndStopIt) {
    server.expect({Server::answer(200, chat::text("One ") + chat::text("two")), Server::Silence{}});
    view.setInputText("Hi");
    EXPECT_TRUE(view.sendButton().isEnabled);
    view.send();
    EXPECT_EQ(view.statusText(), "Thinking…");
    EXPECT_EQ(view.sendButton().label, "Stop response");
    until([&] { return !view.statusText(); });
    EXPECT_EQ(view.streamingContent(), "");
    while (view.streamingContent() != "One two")
        queue.advance(80ms);
    EXPECT_EQ(said().back(), "assistant: One two");
    ModelContext stored(*store.container);
    EXPECT_EQ(named<ChatMessage>(stored, "").role(), ChatRole::assistant);
    view.send(); // one at a time
    view.stop();
    EXPECT_FALSE(view.isStreaming());
    server.waitForLeaving();
    EXPECT_THAT(said(), ElementsAre("user: Hi", "assistant: One two"));
    server.expect({Server::Silence{}});
    view.setInputText("Bye");
    view.send();
    (void)server.requests(2);
    view.stop();
    queue.advance(200s);
    EXPECT_THAT(said(), ElementsAre("user: Hi", "assistant: One two", "user: Bye"));
    EXPECT_FALSE(view.error());
    EXPECT_EQ(queue.timerCount(), 0U);
    EXPECT_THAT(queue.failures(), IsEmpty());
    view.stop();
}

TEST_F(AIChatViews, mayBeStoppedAtEveryStep) {
    const std::string steps = chat::text("a") + listTasks + chat::call(1, "b", "list_notes", "") + tools;
    for (int step = 1, steppedTo = step; steppedTo == step; ++step) {
        server.expect(chat::stream({steps}));
        server.expect(chat::stream({chat::text("b"), chat::text("c")}));
        steppedTo = 0;
        const Observation watching = view.observe([&] {
            if (view.isStreaming() && ++steppedTo == step)
                view.stop();
        });
        view.setInputText("Go");
        view.send();
        until([&] { return !view.isStreaming() && !view.streamingMessageID(); });
        queue.advance(1s);
        EXPECT_EQ(view.statusText(), std::nullopt);
        EXPECT_THAT(queue.failures(), IsEmpty());
        EXPECT_EQ(queue.timerCount(), 0U) << step;
        view.clear();
        server.forgetScripts();
        EXPECT_LT(step, 30);
    }
    EXPECT_THAT(said(), IsEmpty());
}

TEST_F(AIChatViews, sayWhatTheyAreAbout) {
    EXPECT_EQ(view.emptyTitle(), "Ask AI about Site");
    EXPECT_EQ(view.prompt(), "Ask about this project...");
    EXPECT_EQ(view.suggestions().size(), 3U);
    EXPECT_FALSE(view.banner());
    settings.set("aiModel", " ");
    EXPECT_EQ(view.prompt(), "Configure an AI provider in Settings first");
    EXPECT_THAT(view.banner(), Optional(std::string_view("Configure an AI provider in Settings to use AI chat.")));
    EXPECT_THAT(view.suggestions(), IsEmpty());
    view.setInputText("x");
    view.send();
    EXPECT_THAT(said(), IsEmpty());
    view.openSettings();
    EXPECT_EQ(Settings(settings).text(setting("settingsTab")), "ai");
    make<ChatMessage>(mainContext, {.role = ChatRole::system, .content = "s", .project = &project});
    const UUID id = make<ChatMessage>(mainContext, {.content = "**b**", .project = &project}).id();
    make<ChatMessage>(mainContext, {.content = "of another", .client = &acme});
    EXPECT_EQ(view.clearConfirmation().text, "This deletes all 1 messages in this conversation. This can’t be undone.");
    EXPECT_THAT(view.copyForOutlook(id), HasSubstr("<p><b>b</b></p>"));
    EXPECT_EQ(view.copiedMessageID(), id);
    queue.advance(3s);
    EXPECT_FALSE(view.copiedMessageID());
    view.clear();
    EXPECT_EQ(mainContext.fetch<ChatMessage>().size(), 1U);
    EXPECT_EQ(view.copyForOutlook(id), "");
}

TEST_F(AIChatViews, giveReportsOfDays) {
    ReportRangePicker picker(clock, calendar);
    EXPECT_EQ(picker.title() + " / " + picker.generateLabel(), "January 2026 / Generate Jan 9 – Jan 15");
    picker.showPreviousMonth();
    EXPECT_EQ(picker.title(), "December 2025");
    const auto weeks = picker.weeks();
    ASSERT_EQ(weeks.size(), 5U);
    EXPECT_EQ(weeks[0][0].number, 30U); // of November
    EXPECT_EQ(weeks[0][0].name, "Sunday, November 30");
    picker.choose(weeks[4][3].date);
    EXPECT_EQ(picker.generateLabel(), "Generate");
    picker.choose(weeks[4][1].date);
    EXPECT_EQ(picker.generateLabel(), "Generate Dec 29, 2025 – Dec 31, 2025");
    EXPECT_TRUE(picker.weeks()[4][2].isChosen);
    server.expect(chat::stream({chat::text("Report")}));
    view.generateSummary(*picker.range());
    until([&] { return !view.isStreaming(); });
    EXPECT_THAT(said(), ElementsAre("user: Generate a summary for Dec 29, 2025 – Dec 31, 2025", "assistant: Report"));
    const Json::Array messages = sent(0);
    ASSERT_EQ(messages.size(), 2U);
    EXPECT_THAT(*messages[0].find("content")->asString(), StartsWith("You write concise work summaries"));
    EXPECT_THAT(*messages[1].find("content")->asString(), StartsWith("Client: Site\nPeriod: Dec 29, 2025"));
    EXPECT_THAT(server.requests()[0].body, testing::Not(HasSubstr("\"tools\"")));
}

} // namespace
} // namespace quillorn
