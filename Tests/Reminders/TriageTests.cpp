#include "Platform/Json.h"
#include "Reminders/ReminderTriage.h"
#include "Support/TestRecords.h"

#include <fmt/core.h>
#include <gmock/gmock.h>

namespace quillorn {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

const UUID siteID = *UUID::parse("11111111-1111-4111-8111-111111111111");
const UUID shopID = *UUID::parse("22222222-2222-4222-8222-222222222222");
const std::vector<ReminderImportProject> projects{{siteID, "Site", "Acme", std::string(130, 'x')},
                                                  {shopID, "Shop", "", ""}};

ReminderItem item(const std::string& id, const std::string& title = "Title") {
    return {.id = id, .localID = "l", .title = title, .notes = "", .dueDate = {}, .listName = "Work"};
}

/// A decision for "a" that passes, with some members in place of its own.
Json decision(Json::Object changes = {}) {
    Json::Object members{{"reminder_id", "a"},
                         {"is_project_item", true},
                         {"project_id", siteID.string()},
                         {"task_title", " Call Anna\n"},
                         {"description", "d"},
                         {"priority", 2},
                         {"confidence", 0.8},
                         {"reason", "named"}};
    changes.merge(members);
    return changes;
}

Json answerOf(Json::Array items) {
    return Json::Object{{"items", std::move(items)}};
}

std::string skipReasonOf(const Json& decision, const std::vector<OpenTask>& tasks = {}) {
    const std::vector<ReminderItem> items{item("a", "Own title")};
    const auto rows = buildRows(reminderDecisions(answerOf({decision})), tasks, projects, items);
    EXPECT_EQ(rows.at(0).include, !rows[0].skipReason);
    return rows[0].skipReason.value_or("passes");
}

TEST(ReminderFingerprint, hashesWhatTheReminderSays) {
    // SHA-256 of "Title", "", "", "Work" with U+001F between them, by another program.
    EXPECT_EQ(reminderFingerprint(item("a")), "0e96762466254b0ac5fb4c011a2c87f8dc2aeab700a59327a434885725fec56d");
    ReminderItem due = item("b");
    std::set<std::string> seen{reminderFingerprint(due)};
    due.dueDate = Date{};
    EXPECT_TRUE(seen.insert(reminderFingerprint(due)).second);
    due.dueDate = Date{} - std::chrono::milliseconds(500);
    EXPECT_FALSE(seen.insert(reminderFingerprint(due)).second);
    due.dueDate = Date{} - std::chrono::milliseconds(1500);
    EXPECT_TRUE(seen.insert(reminderFingerprint(due)).second);
    due.notes = "n";
    EXPECT_TRUE(seen.insert(reminderFingerprint(due)).second);
}

TEST(ReminderTriage, tellsTheAIOfProjectsAndReminders) {
    ReminderItem first = item("a", "Say \"hi\"\n");
    first.dueDate = date("2026-02-01T10:00:00Z");
    const std::vector<ReminderItem> items{first, item("b")};
    EXPECT_EQ(reminderTriageInput(items, projects),
              "PROJECTS:\n- id=" + siteID.string() + " | Site | client=Acme | " + std::string(120, 'x') +
                  "\n- id=" + shopID.string() +
                  " | Shop | client= | \n\nREMINDERS:\n"
                  R"({"due":"2026-02-01T10:00:00Z","id":"a","list":"Work","notes":"","title":"Say \"hi\"\n"})"
                  "\n"
                  R"({"due":"","id":"b","list":"Work","notes":"","title":"Title"})");
    EXPECT_THAT(reminderTriageInput(items, {}), StartsWith("PROJECTS:\n\n\nREMINDERS:\n{"));
}

TEST(ReminderTriage, holdsDecisionsAgainstTheRulesInTheirOrder) {
    const Json null;
    const std::pair<Json, const char*> cases[] = {
        {decision(), "passes"},
        {decision({{"priority", 7}, {"description", 5}, {"reason", null}}), "passes"},
        {decision({{"confidence", 1}}), "passes"},
        {decision({{"is_project_item", false}, {"project_id", "x"}}), "Not a project item"},
        {decision({{"is_project_item", "true"}}), "Not a project item"},
        {decision({{"is_project_item", 1}}), "Not a project item"},
        {decision({{"project_id", "33333333-3333-4333-8333-333333333333"}, {"confidence", 0}}), "Unknown project"},
        {decision({{"project_id", "Site"}, {"confidence", 0}}), "No project chosen"},
        {decision({{"project_id", null}}), "No project chosen"},
        {decision({{"confidence", 0.79}, {"task_title", ""}}), "Low confidence (0.79)"},
        {decision({{"confidence", "0.9"}}), "Low confidence (0.00)"},
        {decision({{"task_title", " \n"}}), "Empty title"},
        {decision({{"task_title", 3}}), "Empty title"},
        {decision({{"reminder_id", 3}}), "AI returned no decision"},
        {decision({{"reminder_id", "b"}}), "AI returned no decision"},
        {Json("text"), "AI returned no decision"},
    };
    for (const auto& [json, expected] : cases)
        EXPECT_EQ(skipReasonOf(json), expected) << json.text();
    // Titles are the same whatever their case and blanks, within one project.
    EXPECT_EQ(skipReasonOf(decision(), {{siteID, "call \t ANNA"}}), "Duplicate of an open task");
    EXPECT_EQ(skipReasonOf(decision(), {{shopID, "Call Anna"}, {std::nullopt, "Call Anna"}}), "passes");
    EXPECT_EQ(dedupKey(std::nullopt, " ÄRGER  über\nalles "), "-|ärger über alles");
    for (const char* answer : {"{}", "[]", R"({"items": {}})", R"({"items": null})"})
        EXPECT_THAT(reminderDecisions(Json::parse(answer)), IsEmpty()) << answer;
}

TEST(ReminderTriage, makesRowsForAllRemindersInTheirOrder) {
    const std::vector<ReminderItem> items{item("a", "A"), item("b", "B"), item("c", "C"), item("d", "D")};
    const Json answer = answerOf({decision({{"reminder_id", "a"}, {"task_title", "lost: a later one counts"}}),
                                  decision({{"reminder_id", "b"}}), decision({{"reminder_id", "a"}}),
                                  decision({{"reminder_id", "d"}, {"task_title", ""}, {"project_id", "?"}})});
    const auto rows = buildRows(reminderDecisions(answer), {}, projects, items);
    ASSERT_EQ(rows.size(), 4U);
    EXPECT_EQ(rows[0].title, " Call Anna\n");
    EXPECT_EQ(rows[0].priority, TaskPriority::high);
    EXPECT_EQ(rows[0].confidence, 0.8);
    EXPECT_TRUE(rows[0].include && rows[0].projectID == siteID);
    EXPECT_EQ(rows[1].skipReason, "Duplicate of an open task");
    EXPECT_EQ(rows[2].skipReason, noDecisionReason);
    EXPECT_FALSE(rows[2].confidence);
    EXPECT_EQ(rows[2].title, "C");
    EXPECT_EQ(rows[3].title, "D");
    EXPECT_FALSE(rows[3].projectID);
}

TEST(ReminderTriage, remembersWhatWasDecidedAgainst) {
    SkippedReminders skipped;
    const std::vector<std::string> work{"Work"};
    const auto update = [&](std::vector<ReminderImportRow> rows, std::set<std::string> imported,
                            std::set<std::string> open, const std::vector<std::string>& lists, int day) {
        updateSkipped(skipped, rows, imported, open, lists, testNow + std::chrono::days(day));
    };
    const auto keys = [&] {
        std::string all;
        for (const auto& [id, entry] : skipped)
            all += id + ":" + entry.reason + " ";
        return all;
    };
    const ReminderImportRow refused{.reminder = item("a"), .projectID = siteID, .title = "T", .skipReason = "Why"};
    update({refused,
            {.reminder = item("b")},
            {.reminder = item("c"), .skipReason = std::string(noDecisionReason)},
            {.reminder = item("d"), .skipReason = "imported"}},
           {"d"}, {"a", "b", "c"}, work, 0);
    EXPECT_EQ(keys(), "a:Why b:Not imported in review ");
    // Known as long as nothing changes; what changes is asked about again.
    ReminderItem changed = item("b", "Other");
    auto [fresh, known] = partitionKnown({item("x"), changed, item("a")}, skipped);
    EXPECT_THAT(fresh, ElementsAre(item("x"), changed));
    ASSERT_EQ(known.size(), 1U);
    EXPECT_EQ(known[0].skipReason, "Skipped earlier: Why");
    EXPECT_TRUE(known[0].title == "T" && known[0].projectID == siteID && !known[0].include && !known[0].confidence);
    // The first reason and date stay while the reminder is the same.
    update({{.reminder = item("a"), .skipReason = "Later"}, {.reminder = changed, .skipReason = "New"}}, {}, {"a", "b"},
           work, 1);
    EXPECT_EQ(keys(), "a:Why b:New ");
    EXPECT_EQ(skipped["a"].date, testNow);
    EXPECT_EQ(skipped["b"].date, testNow + std::chrono::days(1));
    // What is no longer open goes, in the lists that were looked at.
    update({}, {}, {}, {"Home"}, 2);
    EXPECT_EQ(keys(), "a:Why b:New ");
    update({}, {"a"}, {"a"}, {"Home"}, 2);
    EXPECT_EQ(keys(), "b:New ");
    update({}, {}, {}, work, 2);
    EXPECT_EQ(keys(), "");
}

TEST(ReminderTriage, putsResultsIntoWords) {
    EXPECT_EQ(importResult(3, 1, 3, 0, {}), "Checked 3 new: imported 1, skipped 2");
    EXPECT_EQ(importResult(3, 1, 3, 4, {"a: b", "c"}),
              "Checked 3 new: imported 1, skipped 2 (4 reviewed earlier, not re-checked), 2 problem(s): a: b");
}

} // namespace
} // namespace quillorn
