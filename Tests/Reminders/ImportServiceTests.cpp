#include "Reminders/ReminderImportService.h"

#include "Platform/AtomicFile.h"
#include "Platform/Background.h"
#include "Platform/Calendar.h"
#include "Platform/HttpClient.h"
#include "Support/FakeReminders.h"
#include "Support/ManualQueue.h"
#include "Support/MemorySettings.h"
#include "Support/ScriptedServer.h"
#include "Support/TaskRunner.h"
#include "Support/TestRecords.h"
#include "Support/TestStore.h"

#include <fmt/core.h>
#include <gmock/gmock.h>

namespace quillorn {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using namespace std::chrono_literals;

struct ReminderImport : testing::Test, TestStore, TaskRunner {
    ReminderImport() {
        change(*container, [&](ModelContext& context) {
            auto& acme = make<Client>(context, {.name = "Acme"});
            auto& project = make<Project>(context, {.name = "Site"});
            project.setClient(&acme);
            site = project.id();
            make<Project>(context, {.name = "Old"}).setArchived(true);
        });
        settings.set("reminderImportLists", R"(["Work"])");
        settings.set("aiEndpoint", server.url());
        settings.set("aiModel", "m");
    }

    std::unique_ptr<ReminderImportService> makeService() {
        return std::make_unique<ReminderImportService>(
            ReminderImportEnvironment{clock, calendar, settings, loop, background, TaskRunner::log, client, reminders},
            records, container.get(), false);
    }
    std::string run() {
        result([&] { return service->runImport(); });
        EXPECT_FALSE(service->isRunning() || service->phase());
        return service->lastResult().value_or("none");
    }
    /// An answer of the AI that files those reminders under the project, each by its id as title.
    void expectFiling(const std::vector<std::string>& ids, double confidence = 0.9) {
        Json::Array items;
        for (const std::string& id : ids)
            items.push_back(Json::Object{{"reminder_id", id},
                                         {"is_project_item", true},
                                         {"project_id", site.string()},
                                         {"task_title", "Do " + id},
                                         {"confidence", confidence}});
        expectReply("Here:\n```json\n" + Json(Json::Object{{"items", std::move(items)}}).text() + "\n```");
    }
    void expectReply(const std::string& content) {
        const Json message = Json::Object{{"content", content}};
        const Json choice = Json::Object{{"message", message}};
        server.expect({ScriptedServer::answer(200, Json(Json::Object{{"choices", Json::Array{choice}}}).text())});
    }
    std::vector<std::string> tasks() {
        ModelContext context(*container);
        return namesOf(context.fetch<ProjectTask>());
    }
    ReminderRecords memory() { return *ReminderMemory(records, clock, TaskRunner::log).read(); }

    FakeClock clock;
    Calendar calendar{"Europe/Berlin", "en_US"};
    MemorySettings settings;
    ScriptedServer server;
    FakeReminders reminders;
    Background background{loop};
    HttpClient client{loop};
    std::filesystem::path records = folder / "config/reminders.json";
    UUID site;
    std::unique_ptr<ReminderImportService> service = makeService();
};

TEST_F(ReminderImport, filesWhatPassesAndNeverTwice) {
    reminders.add("Work", "a", "Anna", date("2026-02-01T10:00:00Z"), " Notes ");
    reminders.add("Work", "b", "Bert");
    reminders.add("Home", "c", "Milk");
    expectFiling({"a"});
    EXPECT_EQ(run(), "Checked 2 new: imported 1, skipped 1");
    EXPECT_FALSE(reminders.find("Work/a")->isOpen);
    {
        ModelContext context(*container);
        const auto& task = named<ProjectTask>(context, "Do a");
        EXPECT_EQ(task.taskDescription(), "Notes\n\nFrom Reminders list \"Work\"");
        EXPECT_EQ(task.dueDate(), date("2026-02-01T10:00:00Z"));
        EXPECT_EQ(task.project()->name(), "Site");
        EXPECT_THAT(namesOf(task.tags()), ElementsAre("from-reminders"));
        EXPECT_EQ((*task.tags().begin())->color(), "#8E8E93");
        EXPECT_EQ(memory().ledger.at("a"), task.id().string());
    }
    EXPECT_THAT(service->recent(), ElementsAre(testing::MatchesRegex(
                                       "Jan 15, 2026, 1:00.PM · Do a → Site|Jan 15, 2026, 1:00...PM · Do a → Site")));
    EXPECT_EQ(service->lastRunDate(), clock.now());
    // Reopened, renamed, its task deleted: it was imported.
    change(*container, [](ModelContext& context) { context.remove(named<ProjectTask>(context, "Do a")); });
    *reminders.find("Work/a") = {{"a", "Work/a", "Anna again", "", {}, "Work"}, true, false};
    // The undecided one is asked about again, and then known until it changes.
    expectFiling({"b"}, 0.5);
    EXPECT_EQ(run(), "Checked 1 new: imported 0, skipped 1");
    EXPECT_EQ(memory().skipped.at("b").reason, "Low confidence (0.50)");
    EXPECT_EQ(run(), "Nothing new (1 reviewed earlier)");
    EXPECT_EQ(service->skippedCount(), 1U);
    EXPECT_EQ(server.requests(2).size(), 2U);
    reminders.find("Work/b")->reminder.title = "Bert Brecht";
    expectFiling({"b"});
    reminders.canComplete = false;
    EXPECT_EQ(
        run(),
        "Checked 1 new: imported 1, skipped 0, 1 problem(s): Bert Brecht: task created, could not complete reminder");
    EXPECT_TRUE(service->hasProblems());
    EXPECT_EQ(service->skippedCount(), 0U);
    EXPECT_THAT(tasks(), ElementsAre("Do b"));
    // A new start knows all of it.
    EXPECT_EQ(makeService()->lastResult(), service->lastResult());
    EXPECT_EQ(run(), "Nothing new");
}

TEST_F(ReminderImport, asksInBatchesAndEndsWithTheFirstFailure) {
    std::vector<std::string> phases;
    const Observation seen = service->observe([&] {
        if (service->phase() && (phases.empty() || phases.back() != *service->phase()))
            phases.push_back(*service->phase());
    });
    for (int i = 0; i < 41; ++i)
        reminders.add("Work", fmt::format("{:02}", i), "R");
    expectFiling({"00", "19"});
    expectFiling({"20", "20"});
    expectFiling({"40"});
    EXPECT_EQ(run(), "Checked 41 new: imported 4, skipped 37");
    EXPECT_THAT(phases, ElementsAre("Reading reminders…", "Asking AI (1/3)…", "Asking AI (2/3)…", "Asking AI (3/3)…"));
    const std::string last = server.requests(3).at(2).body;
    EXPECT_THAT(last, AllOf(HasSubstr("You triage personal"), HasSubstr(R"(\"id\":\"40\")"),
                            Not(HasSubstr(R"(\"39\")")), HasSubstr("| Site | client=Acme | "), Not(HasSubstr("Old"))));

    // Whatever goes wrong leaves everything as it was.
    const std::string before = readFile(records);
    expectFiling({"01"});
    expectReply("I would rather not.");
    EXPECT_EQ(run(), "Failed: Invalid response from server");
    EXPECT_EQ(readFile(records), before);
    EXPECT_EQ(tasks().size(), 4U);
    server.standBy({ScriptedServer::answer(503, "busy")});
    EXPECT_EQ(run(), "Failed: HTTP error 503: busy");
    reminders.isGranted = false;
    EXPECT_EQ(run(), "No access to Reminders");
    settings.set("aiModel", " ");
    EXPECT_EQ(run(), "AI endpoint not configured (Settings → AI)");
    for (const char* none : {"", "[]", "Work", "[1]", "{}"}) {
        settings.set("reminderImportLists", none);
        EXPECT_EQ(run(), "No lists selected");
    }
}

TEST_F(ReminderImport, settlesWhatTheEndOfAProcessHasLeft) {
    reminders.add("Work", "saved", "Saved");
    reminders.add("Work", "lost", "Lost");
    UUID task;
    change(*container, [&](ModelContext& context) { task = make<ProjectTask>(context, {.title = "Saved"}).id(); });
    std::filesystem::create_directory(records.parent_path());
    writeFile(records, fmt::format(R"({{"ledger": {{"x": "y"}}, "pending": {{"saved": "{}", "lost": "{}"}}}})",
                                   task.string(), site.string()));
    expectFiling({"lost", "saved"});
    EXPECT_EQ(run(), "Checked 1 new: imported 1, skipped 0");
    EXPECT_THAT(tasks(), ElementsAre("Saved", "Do lost"));
    EXPECT_EQ(memory().ledger.size(), 3U);
    EXPECT_THAT(memory().pending, IsEmpty());
}

TEST_F(ReminderImport, keepsToOneImportAtATimeAcrossProcesses) {
    reminders.add("Work", "a", "Anna");
    std::filesystem::create_directory(records.parent_path());
    std::optional<FileLock> other(records.string() + "-import");
    EXPECT_EQ(run(), "Another Quillorn is importing");
    EXPECT_FALSE(service->lastRunDate());
    other.reset();
    expectFiling({"a"});
    EXPECT_EQ(run(), "Checked 1 new: imported 1, skipped 0");
}

TEST_F(ReminderImport, letsAPersonDecide) {
    reminders.add("Work", "b", "Bert");
    reminders.add("Work", "a", "Anna");
    reminders.add("Work", "c", "Carl");
    expectFiling({"b"});
    ReminderScan scan = result([&] { return service->scan({"Work"}); });
    EXPECT_FALSE(std::filesystem::exists(records));
    std::vector<std::string> titles;
    for (const auto& row : scan.rows)
        titles.push_back(row.reminder.title);
    EXPECT_THAT(titles, ElementsAre("Bert", "Anna", "Carl"));

    auto rows = scan.rows;
    rows[0].include = false;
    rows[1].include = true; // against the advice
    rows[1].projectID = site;
    rows[1].title = " My own ";
    rows[2].include = true;
    rows[2].projectID = UUID();
    ApplyResult applied = result([&] { return service->import(rows, true, scan); });
    EXPECT_EQ(applied.created, 1U);
    EXPECT_EQ(applied.completed, 1U);
    EXPECT_THAT(applied.failures, ElementsAre("Carl: project no longer exists"));
    EXPECT_THAT(tasks(), ElementsAre("My own"));
    EXPECT_EQ(memory().skipped.at("b").reason, "Not imported in review");
    result([&] { return service->recheckSkipped(); });
    EXPECT_THAT(memory().skipped, IsEmpty());
    EXPECT_EQ(memory().ledger.size(), 1U);

    // A row that was imported meanwhile is passed over; a reminder that is gone, or moved, is a failure of its own.
    reminders.add("Work", "d", "Dora");
    scan.lists = {"Elsewhere"};
    rows = {rows[1], rows[1], rows[1]};
    rows[1].reminder = ReminderItem::of(reminders.items.back().reminder);
    rows[2].reminder.id = rows[2].reminder.localID = "gone";
    applied = result([&] { return service->import(rows, true, scan); });
    EXPECT_EQ(applied.created, 2U);
    EXPECT_THAT(applied.failures, ElementsAre("Dora: task created, reminder not found in chosen lists",
                                              "Anna: task created, reminder not found in chosen lists"));
}

TEST_F(ReminderImport, survivesADiskThatIsFullAndBrokenRecords) {
    reminders.add("Work", "a", "Anna");
    std::filesystem::create_directory(records.parent_path());
    writeFile(records, "{\"ledger\"");
    expectFiling({"a"});
    std::filesystem::create_directory(records.string() + "-lock"); // nothing can be written
    EXPECT_THAT(run(), HasSubstr("Failed: "));
    EXPECT_THAT(tasks(), IsEmpty());
    std::filesystem::remove(records.string() + "-lock");
    for (const auto& [text, ledger] :
         std::vector<std::pair<std::string, std::size_t>>{{R"({"ledger": {"x": "y", "z": 1}})", 0},
                                                          {R"({"ledger": {"x": "y"}, "skipped": {"a": {}}})", 1},
                                                          {"[]", 0}}) {
        writeFile(records, text);
        EXPECT_EQ(memory().ledger.size(), ledger) << text;
        EXPECT_THAT(memory().skipped, IsEmpty());
    }
    EXPECT_EQ(readFile(records.string() + ".broken-2026-01-15T120000Z"), "[]");
}

TEST_F(ReminderImport, runsWhenItIsDue) {
    ManualQueue queue(clock);
    Background manual(queue);
    int passes = 0;
    ReminderImportService scheduled({clock, calendar, settings, queue, manual, TaskRunner::log, client, reminders},
                                    records, container.get(), true);
    scheduled.demoDecide = [&](const auto&, const auto&) { return std::vector<ReminderDecision>(); };
    scheduled.demoReminders = std::vector<ReminderItem>{{.id = "a", .title = "A", .listName = "Work"}};
    const auto minutes = [&](int count) {
        for (int i = 0; i < count; ++i) {
            const auto before = scheduled.lastRunDate();
            queue.advance(1min);
            while (scheduled.isRunning()) {
                std::this_thread::yield();
                queue.runPosted();
            }
            passes += scheduled.lastRunDate() != before;
        }
        return std::exchange(passes, 0);
    };
    EXPECT_EQ(minutes(5), 0);
    EXPECT_FALSE(scheduled.nextRunDate());
    settings.set("reminderImportAuto", true);
    EXPECT_EQ(minutes(1), 1);
    EXPECT_EQ(scheduled.lastResult(), "Checked 1 new: imported 0, skipped 1");
    EXPECT_EQ(minutes(59), 0);
    EXPECT_EQ(minutes(1), 1);
    settings.set("reminderImportIntervalMinutes", 15);
    EXPECT_EQ(minutes(14), 0);
    settings.set("reminderImportLists", "[]"); // a failing pass waits for its time as well
    EXPECT_EQ(minutes(16), 2);
    // The pass of another process counts.
    settings.set("reminderImportLastRun", formatISO8601(clock.now() + 5min));
    EXPECT_EQ(minutes(18), 0);
    settings.set("reminderImportIntervalMinutes", 0);
    EXPECT_EQ(scheduled.nextRunDate(), date(*settings.value("reminderImportLastRun")->asString()) + 1h);
}

} // namespace
} // namespace quillorn
