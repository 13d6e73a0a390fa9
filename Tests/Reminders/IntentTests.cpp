#include "Models/Settings.h"
#include "Platform/Background.h"
#include "Platform/Calendar.h"
#include "Platform/OnDeviceModel.h"
#include "Platform/Text.h"
#include "Reminders/ReminderIntents.h"
#include "Reminders/SiriProjectRouter.h"
#include "Support/FakeClock.h"
#include "Support/ManualQueue.h"
#include "Support/MemorySettings.h"
#include "Support/TaskRunner.h"
#include "Support/TestRecords.h"
#include "Support/TestStore.h"

#include <fmt/core.h>
#include <gmock/gmock.h>

namespace quillorn {
namespace {

using namespace SiriReminderRules;
using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;
using Kind = QuillornIntentError::Kind;

/// A model that answers what it is told to, or never.
struct FakeModel final : OnDeviceModel {
    bool isAvailable() const override { return available; }
    std::optional<std::size_t> contextSize() const override { return context; }
    std::optional<std::size_t> tokenCount(const std::string& text) const override {
        prompts.push_back(text);
        return countsTokens ? std::optional(text.size()) : std::nullopt;
    }
    Task<std::optional<std::string>> respond(std::string prompt, Choice asked) override {
        choice = std::move(asked);
        prompts.push_back(std::move(prompt));
        if (fails)
            throw std::runtime_error("broken");
        if (!answer)
            co_await never;
        co_return answer;
    }

    bool available = true;
    bool fails = false;
    bool countsTokens = true;
    std::optional<std::size_t> context = 100'000;
    std::optional<std::string> answer;
    Completion<void> never;
    Choice choice;
    mutable std::vector<std::string> prompts;
};

TEST(SiriReminderRules, composeAndListWhatIsSpoken) {
    const std::vector<std::string> urls{"https://a.example", "https://b.example", "https://a.example"};
    EXPECT_EQ(composeNote(" see https://b.example/x \n", urls), "see https://b.example/x\nhttps://a.example");
    EXPECT_EQ(composeNote(" \n", {}), std::nullopt);
    EXPECT_EQ(composeNote("", urls), "https://a.example\nhttps://b.example");
    const std::vector<std::string> words{"a", "b", "c"};
    EXPECT_EQ(spokenList(words), "a, b or c");
    EXPECT_EQ(spokenList(std::span(words).first(2)), "a or b");
    EXPECT_EQ(spokenList(std::span(words).first(1)) + spokenList({}), "a");
    EXPECT_EQ(projectPath("Site", "Acme") + projectPath("Site", ""), "Acme › SiteSite");
}

TEST(SiriReminderRules, readDatesWithAndWithoutATime) {
    const Calendar calendar("Europe/Berlin", "en_US");
    const Date now = date("2026-01-15T12:00:00Z");
    const std::pair<const char*, const char*> cases[] = {{"2026-01-31", "2026-01-30T23:00:00Z"},
                                                         {"2026-07-31T09:05", "2026-07-31T07:05:00Z t"},
                                                         {"2026-07-31 09:05:59", "2026-07-31T07:05:00Z t"},
                                                         {"2026-07-31T09:05Z", "2026-07-31T09:05:00Z t"},
                                                         {"2026-07-31T09:05:00+05:30", "2026-07-31T03:35:00Z t"},
                                                         {"2026-02-30", "none"},
                                                         {"2026-07-31T24:00", "none"},
                                                         {"2026-07-31T09", "none"},
                                                         {"20260731", "none"},
                                                         {"", "none"},
                                                         {"2026-07-31T09:05:0x", "none"},
                                                         {"2026-07-31T09:05:00.5Z", "none"}};
    for (const auto& [text, expected] : cases) {
        const auto components = parseDateComponents(text, calendar);
        const auto resolved = components ? resolve(*components, calendar, now) : std::nullopt;
        EXPECT_EQ(resolved ? formatISO8601(resolved->date) + (resolved->hasTime ? " t" : "") : "none", expected)
            << text;
    }
    EXPECT_FALSE(resolve({.year = std::chrono::year{2026}}, calendar, now));
    EXPECT_EQ(resolve({.hour = 14h}, calendar, now)->date, date("2026-01-15T13:00:00Z"));
    EXPECT_EQ(resolve({.hour = 12h}, calendar, now)->date, date("2026-01-16T11:00:00Z"));
}

struct Intents : testing::Test, TestStore, TaskRunner {
    UUID project(const std::string& name, const std::string& client = "", const std::string& description = "") {
        UUID id;
        change(*container, [&](ModelContext& context) {
            auto& made = make<Project>(context, {.name = name, .projectDescription = description});
            if (!client.empty())
                made.setClient(&make<Client>(context, {.name = client}));
            id = made.id();
        });
        return id;
    }
    void tag(const std::string& name) {
        change(*container, [&](ModelContext& context) { make<Tag>(context, {.name = name}); });
    }
    std::string create(CreateReminderParameters parameters) {
        const SpokenResult spoken = result([&] { return intents.create(parameters); });
        last = spoken.taskId;
        return spoken.sentence;
    }
    std::string update(UpdateReminderParameters parameters) {
        parameters.target = last;
        return result([&] { return intents.update(parameters); }).sentence;
    }
    /// Of the last task.
    template <typename Look>
    auto look(Look at) {
        ModelContext context(*container);
        return at(*context.find<ProjectTask>(last));
    }
    QuillornReminder seen() {
        return result([&] { return intents.reminders(std::vector<UUID>{last}); }).at(0);
    }
    std::optional<UUID> route(const std::vector<Candidate>& all) {
        return result([&] { return router.route("Call", "a note", all); });
    }
    static std::vector<Candidate> many(std::size_t count) {
        std::vector<Candidate> all;
        for (std::size_t i = 0; i < count; ++i)
            all.push_back(
                {UUID(UUID::Bytes{static_cast<std::uint8_t>(i + 1)}), fmt::format("P{:02}", i), std::string(20, 'd')});
        return all;
    }

    FakeClock clock;
    Calendar calendar{"Europe/Berlin", "en_US"};
    Text text{"en_US"};
    MemorySettings settings;
    FakeModel model;
    Background background{loop};
    SiriProjectRouter router{model, loop, TaskRunner::log};
    std::vector<std::string> notifications;
    ReminderIntents intents{{container.get(), background, clock, calendar, text, settings, router,
                             [this](const UUID& id) { notifications.push_back("+" + id.string()); },
                             [this](const std::string& id) { notifications.push_back("-" + id); }}};
    UUID last;
};

TEST_F(Intents, createTasksAndSaySo) {
    const UUID site = project("Site", "Acme");
    tag("Urgent");
    EXPECT_EQ(create({.title = " Call Anna\n"}), "Added “Call Anna” to Quillorn.");
    EXPECT_THAT(notifications, ElementsAre("+" + last.string()));
    EXPECT_EQ(seen().list, QuillornReminderList::inbox());
    settings.set("defaultPriority", 0);
    EXPECT_EQ(create({.title = "Offer",
                      .list = site,
                      .note = " n ",
                      .isFlagged = false,
                      .tags = {"#ÚRGENT", "urgent", "b", "#a"},
                      .urls = {"https://x.example"},
                      .dueDate = parseDateComponents("2026-02-01", calendar)}),
              "Added “Offer” to Acme › Site in Quillorn, due Feb 1, 2026. There's no Quillorn tag named “#a” or “b”.");
    EXPECT_EQ(look([](auto& task) { return task.taskDescription(); }), "n\nhttps://x.example");
    EXPECT_EQ(look([](auto& task) { return task.priority(); }), TaskPriority::low);
    EXPECT_THAT(seen().tags, ElementsAre("Urgent"));
    EXPECT_EQ(seen().dueDate, parseDateComponents("2026-02-01", calendar));
    EXPECT_EQ(seen().list, (QuillornReminderList{site, "Site", "Acme"}));
    settings.set("defaultPriority", 9);
    EXPECT_THAT(
        create({.title = "Later",
                .list = QuillornReminderList::inboxID(),
                .images = 1,
                .dueDate = parseDateComponents("2026-02-01T09:05", calendar),
                .recurrence = true}),
        testing::MatchesRegex("Added “Later” to Quillorn, due Feb 1, 2026, 9:05[^.]*AM\\. Turn on notifications in "
                              "Quillorn to get an alert\\. Quillorn doesn't keep repeat schedules or images, so I left "
                              "that off\\."));
    EXPECT_EQ(look([](auto& task) { return task.priority(); }), TaskPriority::medium);
    EXPECT_EQ(create({.title = "F", .list = UUID(), .isFlagged = true, .locationTrigger = true}),
              "Added “F” to Quillorn. Quillorn doesn't keep location alerts, so I left that off.");
    EXPECT_TRUE(seen().isFlagged);
    try {
        create({.title = " \n"});
        FAIL();
    } catch (const QuillornIntentError& error) {
        EXPECT_TRUE(error.kind() == Kind::titleMissing && error.what() == std::string("What should the reminder say?"));
    }
    EXPECT_THAT(result([&] { return intents.suggestedReminders(); }), SizeIs(4));
}

TEST_F(Intents, updateTasksAndSaySo) {
    const UUID site = project("Site", "Acme");
    create({.title = "A", .list = UUID()});
    EXPECT_EQ(update({.title = " \n", .tags = {{"x"}}}), "Updated “A” in Quillorn. There's no Quillorn tag named “x”.");
    EXPECT_EQ(update({.title = "B", .recurrence = true, .list = site}),
              "Moved “B” to Acme › Site in Quillorn. Quillorn doesn't keep repeat schedules or location alerts, so I "
              "left that off.");
    EXPECT_EQ(update({.list = QuillornReminderList::inboxID()}), "Moved “B” to Inbox in Quillorn.");
    EXPECT_EQ(update({.note = "n", .isCompleted = true, .list = site}), "Marked “B” as done in Quillorn.");
    EXPECT_TRUE(seen().isCompleted && seen().list.id == site && seen().note == "n");
    EXPECT_EQ(notifications.back(), "-quillorn.task-due." + last.string());
    EXPECT_EQ(update({.urls = {{"https://u"}}, .isCompleted = false}), "Marked “B” as not done in Quillorn.");
    EXPECT_EQ(seen().note, "https://u");
    const std::pair<bool, TaskPriority> flags[] = {{true, TaskPriority::high},
                                                   {true, TaskPriority::high},
                                                   {false, TaskPriority::medium},
                                                   {false, TaskPriority::medium}};
    for (const auto& [flag, priority] : flags) {
        update({.isFlagged = flag});
        EXPECT_EQ(look([](auto& task) { return task.priority(); }), priority);
    }
    last = UUID();
    EXPECT_THROW(update({.title = "C"}), QuillornIntentError);
    EXPECT_THROW(result([&] {
                     auto environment =
                         ReminderIntentsEnvironment{nullptr, background, clock, calendar, text, settings, router};
                     return std::make_shared<ReminderIntents>(environment)->suggestedLists();
                 }),
                 QuillornIntentError);
}

TEST_F(Intents, findListsAndRemindersByWhatPeopleSay) {
    project("Café", "Müller");
    change(*container, [](ModelContext& context) {
        make<Project>(context, {.name = "Gone"}).setArchived(true);
        make<ProjectTask>(context, {.title = "Ärger done"}).setCompleted(true, testNow);
        make<ProjectTask>(context, {.title = "Ärger open"});
    });
    const auto lists = [&](const std::string& words) {
        std::string names;
        for (const auto& list : result([&] { return intents.lists(words); }))
            names += list.name + " ";
        return names;
    };
    EXPECT_EQ(lists("muller cafe") + lists("INBOX") + lists("zz"), "Café Inbox ");
    EXPECT_THAT(result([&] { return intents.suggestedLists(); }), SizeIs(2));
    const auto found = result([&] { return intents.reminders(std::string("arger")); });
    ASSERT_THAT(found, SizeIs(2));
    EXPECT_TRUE(found[0].title == "Ärger open" && found[1].title == "Ärger done");
}

TEST_F(Intents, labelsAreUniqueWhateverTheNames) {
    for (const char* name : {"A", "A", "A (2)", "A", "None", "None"})
        project(name, "", name == std::string("A (2)") ? "one\ntwo" + std::string(90, 'x') : "");
    ModelContext context(*container);
    std::vector<std::string> labels;
    for (const Candidate& each : candidates(activeProjects(context)))
        labels.push_back(each.label);
    EXPECT_THAT(labels, ElementsAre("A", "A (3)", "A (2)", "A (4)", "None (2)", "None (3)"));
    EXPECT_EQ(candidates(activeProjects(context))[2].detail, "one two" + std::string(73, 'x'));
}

TEST_F(Intents, routingFilesOnlyWhatTheModelIsSureOf) {
    const auto all = many(3);
    model.answer = "P01";
    EXPECT_EQ(route(all), all[1].id);
    EXPECT_THAT(model.choice.values, ElementsAre("None", "P00", "P01", "P02"));
    EXPECT_THAT(model.prompts.back(),
                HasSubstr("Never guess.\n\nReminder: Call\nNote: a note\n\nProjects:\n- P00: dddd"));
    for (const char* other : {"None", "P99", ""}) {
        model.answer = other;
        EXPECT_FALSE(route(all)) << other;
    }
    model.answer = "P00";
    EXPECT_FALSE(route(many(1)));
    model.available = false;
    EXPECT_FALSE(route(all));
    model.available = true;
    model.fails = true;
    EXPECT_FALSE(route(all));
    EXPECT_THAT(TaskRunner::log.lines(), ElementsAre("SiriProjectRouter: not filed (broken)"));
    model.fails = false;
    // Over budget a quarter of the projects goes at a time, down to one.
    model.prompts.clear();
    model.context = 10;
    route(many(40));
    std::vector<std::ptrdiff_t> counts;
    for (const std::string& prompt : model.prompts)
        counts.push_back(std::count(prompt.begin(), prompt.end(), '\n') - 6);
    EXPECT_THAT(counts, ElementsAre(40, 30, 23, 18, 14, 11, 9, 7, 6, 5, 4, 3, 2, 1, 1));
    model.countsTokens = false;
    route(many(40));
    EXPECT_THAT(model.choice.values, SizeIs(41));
}

TEST_F(Intents, aSlowModelCostsTheFilingAlone) {
    ManualQueue queue(clock);
    SiriProjectRouter slow(model, queue, TaskRunner::log);
    bool isDone = false;
    TaskScope scope;
    auto ask = [](SiriProjectRouter& asked, std::vector<Candidate> all, bool& done) -> Task<> {
        const std::optional<UUID> chosen = co_await asked.route("Call", "", std::move(all));
        EXPECT_FALSE(chosen);
        done = true;
    };
    scope.start(ask(slow, many(2), isDone));
    queue.advance(3999ms);
    EXPECT_FALSE(isDone);
    queue.advance(1ms);
    EXPECT_TRUE(isDone);
    EXPECT_EQ(queue.timerCount(), 0U);
}

} // namespace
} // namespace quillorn
