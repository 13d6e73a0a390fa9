#include "Models/TaskSentence.h"

#include "Models/DayPhrase.h"
#include "Models/WhenPhrase.h"
#include "Platform/Calendar.h"
#include "Platform/Text.h"
#include "Support/TestRecords.h"

#include <fmt/core.h>
#include <fmt/ranges.h>
#include <gtest/gtest.h>

namespace quillorn {
namespace {

// testNow is Thursday, January 15, 2026, 12:00 UTC; the days below are counted from others too.
TEST(DayPhrase, isReadAsPeopleAndModelsWriteIt) {
    struct Case {
        const char *text, *today, *expected;
    };
    // clang-format off
    const Case cases[] = {
        {"today", "2026-01-15", "2026-01-15"}, {" Tomorrow\n", "2026-01-15", "2026-01-16"}, {"in 1 day", "2026-01-31", "2026-02-01"},
        {"in 2 weeks", "2026-01-15", "2026-01-29"}, {"maybe within 3 days or so", "2026-01-15", "2026-01-18"},
        {"thursday", "2026-01-15", "2026-01-22"}, {"friday", "2026-01-15", "2026-01-16"}, {"next MONDAY", "2026-01-12", "2026-01-19"},
        {"wednesday", "2026-01-15", "2026-01-21"}, {"end of week", "2026-01-16", "2026-01-17"},
        {"end of the week", "2026-01-17", "2026-01-23"}, {"end of week", "2026-01-12", "2026-01-16"},
        {"next week", "2026-01-12", "2026-01-19"}, {"next week", "2026-01-18", "2026-01-19"}, {"2026-02-11", "2026-01-15", "2026-02-11"},
        {"2028-02-29", "2026-01-15", "2028-02-29"}, {"2026-2-3", "2026-01-15", "2026-02-03"},
        {"2026-13-40", "2026-01-15", ""}, {"2026-02-29", "2026-01-15", ""}, {"26-02-11", "2026-01-15", ""}, {"0000-01-01", "2026-01-15", ""},
        {"2026-02-11 15:00", "2026-01-15", ""}, {"soon", "2026-01-15", ""}, {"", "2026-01-15", ""}, {"in days", "2026-01-15", ""},
        {"in 99999999999999999999 days", "2026-01-15", ""}, {"in 999999 weeks", "2026-01-15", ""}, {"mondays", "2026-01-15", ""},
    };
    // clang-format on
    const Calendar calendar("UTC", "en_US");
    for (const Case& each : cases) {
        const auto day = dayNamed(each.text, date(fmt::format("{}T23:30:00Z", each.today)), calendar);
        EXPECT_EQ(day ? calendar.format(calendar.instant(*day), "yyyy-MM-dd") : "", each.expected) << each.text;
    }
}

TEST(When, isReadAsAWhole) {
    const std::pair<const char*, const char*> cases[] = {
        // clang-format off
        {"today", "2026-01-15 00:00"}, {" Tomorrow 09:05 ", "2026-01-16 09:05 t"}, {"friday at 3pm", "2026-01-16 15:00 t"},
        {"by next week", "2026-01-19 00:00"}, {"2026-02-11", "2026-02-11 00:00"}, {"2026-02-11 15:00", "2026-02-11 15:00 t"},
        {"2026-02-11T15:00", "2026-02-11 15:00 t"}, {"2026-02-11T15:00:30", "2026-02-11 15:00 t"},
        {"2026-02-11T15:00Z", "2026-02-11 16:00 t"}, {"2026-02-11T15:00:00-05:00", "2026-02-11 21:00 t"},
        {"13:30", "2026-01-15 13:30 t"}, {"at 9:05", "2026-01-16 09:05 t"}, {"9pm", "2026-01-15 21:00 t"},
        {"yesterday", "2026-01-14 00:00"}, {"yesterday 17:00", "2026-01-14 17:00 t"}, {"now", "2026-01-15 13:00 t"},
        {"", ""}, {"soon", ""}, {"today or so", ""}, {"25:00", ""}, {"9", ""}, {"2026-02-30", ""}, {"2026-02-11T25:00", ""},
        {"2026-02-11T15:00+xx", ""}, {"yesterdays", ""}, {"today 9:05 10:00", ""}, {"nowhere", ""},
        // clang-format on
    };
    const Calendar calendar("Europe/Berlin", "en_US");
    for (const auto& [text, expected] : cases) {
        const auto when = readWhen(text, testNow, calendar);
        std::string read = when ? calendar.format(when->nextDate(testNow, calendar), "yyyy-MM-dd HH:mm") : "";
        if (when && when->hasTime())
            read += " t";
        EXPECT_EQ(read, expected) << text;
    }
    EXPECT_EQ(readWhen("9:05", testNow, calendar)->date(testNow, calendar), date("2026-01-15T08:05:00Z"));
}

TEST(TaskSentence, isUnderstoodByItsRules) {
    struct Case {
        const char *sentence, *title, *due, *rest = "- - []";
    };
    // clang-format off
    const Case cases[] = {
        {"Call Bob about the invoice tomorrow, high priority", "Call Bob about the invoice", "2026-01-16", "High - []"},
        {"Tomorrow, call Bob", "call Bob", "2026-01-16"}, {"Buy milk tomorrow, eggs and bread", "Buy milk, eggs and bread", "2026-01-16"},
        {"Write tests by next Friday, !urgent", "Write tests", "2026-01-16", "Urgent - []"}, {"Report (due in 2 weeks).", "Report.", "2026-01-29"},
        {"Meet friday 3pm in the office", "Meet in the office", "2026-01-16 15:00"}, {"Meet friday at 3:30 PM.", "Meet.", "2026-01-16 15:30"},
        {"Stand-up at 15:00", "Stand-up", "2026-01-15 15:00"}, {"Stand-up at 9:05", "Stand-up", "2026-01-16 09:05"},
        {"Call at 12am", "Call", "2026-01-16 00:00"}, {"Call today 9:00", "Call", "2026-01-15 09:00"}, {"Call at 3pm tomorrow", "Call", "2026-01-16 15:00"},
        {"Release 2026-02-11 15:00 to all", "Release to all", "2026-02-11 15:00"}, {"Release 2026-02-11T15:00:30.", "Release.", "2026-02-11 15:00"},
        {"Release 2026-02-11T15:00:00+02:00 now", "Release now", "2026-02-11 13:00"}, {"Pay 2026-02-11", "Pay", "2026-02-11"},
        {"Ask today whether tomorrow works", "Ask whether tomorrow works", "2026-01-15"},
        {"Move it from monday 10:00 to tuesday 11:00", "Move it from to tuesday 11:00", "2026-01-19 10:00"},
        // No phrase of its own, no time, no date.
        {"Read today's post at 15 Main Street", "Read today's post at 15 Main Street", ""}, {"Look at 25:00 and 12:60", "Look at 25:00 and 12:60", ""},
        {"Fix 2026-13-40 and notes-2026-02-11.txt", "Fix 2026-13-40 and notes-2026-02-11.txt", ""}, {"Serve 13pm, at 0am", "Serve 13pm, at 0am", ""},
        {"Low priority, then high priority", "then high priority", "", "Low - []"}, {"!lower the high prioritys", "!lower the high prioritys", ""},
        // Names.
        {"Review PR #42 #bug", "Review PR #42", "", "- - [\"bug\"]"}, {"Mail bob@acme.com @ACME", "Mail bob@acme.com", "", "- Acme []"},
        {"Fix #Code Review, #bug #BUG @acme labs @acme", "Fix @acme", "", "- Acme Labs [\"code review\", \"bug\"]"},
        {"Look at #bugs, #bug-fix and #code", "Look at #bugs, #bug-fix and", "", "- - [\"code\"]"}, {"Größe #ÄRGER!", "Größe!", "", "- - [\"Ärger\"]"},
        // Nothing would be left.
        {" tomorrow, !low ", "tomorrow, !low", "2026-01-16", "Low - []"}, {"", "", ""}, {" , # @ ", ", # @", ""},
    };
    // clang-format on
    const Calendar calendar("UTC", "en_US");
    const Text text("en_US");
    const TaskNames names{{"Acme", "", "Acme Labs"}, {"bug", "code", "code review", "Ärger", ""}};
    for (const Case& each : cases) {
        const ParsedTaskResult result = readTaskSentence(each.sentence, names, testNow, calendar, text);
        EXPECT_EQ(result.title, each.title);
        const std::string_view form = result.dueHasTime ? "yyyy-MM-dd HH:mm" : "yyyy-MM-dd";
        EXPECT_EQ(result.dueDate ? calendar.format(*result.dueDate, form) : "", each.due) << each.sentence;
        EXPECT_EQ(fmt::format("{} {} {}", result.priority ? label(*result.priority) : "-",
                              result.projectName.value_or("-"), result.tagNames),
                  each.rest)
            << each.sentence;
    }
}

TEST(TaskSentence, takesTheClockOfTheUser) {
    const auto due = [](const char* sentence, const char* now) {
        const Calendar calendar("America/New_York", "en_US");
        return readTaskSentence(sentence, {}, date(now), calendar, Text("en_US")).dueDate.value();
    };
    EXPECT_EQ(due("x tomorrow", "2026-03-08T01:00:00Z"), date("2026-03-08T05:00:00Z"));
    EXPECT_EQ(due("x tomorrow 2:30", "2026-03-08T01:00:00Z"), date("2026-03-08T07:30:00Z")); // skipped: 3:30 EDT
    EXPECT_EQ(due("x tomorrow 1:30", "2026-11-01T01:00:00Z"), date("2026-11-01T05:30:00Z")); // twice: the first
    EXPECT_EQ(due("x at 20:00", "2026-03-08T01:00:00Z"), date("2026-03-08T01:00:00Z"));      // now is not past
}

} // namespace
} // namespace quillorn
