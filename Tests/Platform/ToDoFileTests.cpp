#include "Platform/ToDoFile.h"
#include "Platform/ZoneRules.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace quillorn {
namespace {

using testing::ElementsAre;

const ZoneRules berlin("Europe/Berlin");

std::string calendarOf(const std::string& inside) {
    return "BEGIN:VCALENDAR\nVERSION:2.0\n" + inside + "END:VCALENDAR\n";
}

std::string toDoOf(const std::string& lines) {
    return calendarOf("BEGIN:VTODO\nUID:1\n" + lines + "\nEND:VTODO\n");
}

std::string dueOf(const std::string& file) {
    const std::optional<Date> due = readToDos(file, berlin).at(0).due;
    return due ? formatISO8601(*due) : "none";
}

TEST(ToDoFile, readsWhatProgramsWrite) {
    struct Case {
        std::string lines;
        std::string summary;
        std::string description;
    };
    for (const Case& each : {
             Case{"SUMMARY:Call the printer\r\nDESCRIPTION:a\\nb\\, c\\; \\\\n", "Call the printer", "a\nb, c; \\n"},
             {"SUM\n MARY:Fol\r\n\t ded Gr\xC3\n \xBC\xC3\x9F"
              "e",
              "Fol ded Grüße", ""},
             {"SUMMARY;LANGUAGE=de;ALTREP=\"cid:x;y:z\":Mit: Doppelpunkt", "Mit: Doppelpunkt", ""},
             {"summary:lower\nDescription:case", "lower", "case"},
             {"SUMMARY:Gr\xFC\xDF"
              "e\nX-RUBBISH\n:\n;;;:",
              "Gr\xEF\xBF\xBD\xEF\xBF\xBD"
              "e",
              ""},
             {"DESCRIPTION:no summary", "", "no summary"},
             {"SUMMARY:own\nBEGIN:VALARM\nSUMMARY:alarm\nSTATUS:COMPLETED\nDESCRIPTION:alarm\nEND:VALARM", "own", ""},
         }) {
        const std::vector<ToDo> todos = readToDos(toDoOf(each.lines), berlin);
        ASSERT_EQ(todos.size(), 1U) << each.lines;
        EXPECT_EQ(todos[0].summary, each.summary);
        EXPECT_EQ(todos[0].description, each.description);
        EXPECT_TRUE(todos[0].isOpen);
    }
}

TEST(ToDoFile, readsDueDatesInAnyZone) {
    const std::string defined = "BEGIN:VTIMEZONE\nTZID:Own\n"
                                "BEGIN:STANDARD\nDTSTART:16010101T030000\nTZOFFSETFROM:-0300\nTZOFFSETTO:-0400\n"
                                "RRULE:FREQ=YEARLY;INTERVAL=1;BYDAY=-1SU;BYMONTH=10\nEND:STANDARD\n"
                                "BEGIN:DAYLIGHT\nDTSTART:16010101T020000\nTZOFFSETFROM:-0400\nTZOFFSETTO:-0300\n"
                                "RRULE:FREQ=YEARLY;BYMONTH=3;BYDAY=2SU\nEND:DAYLIGHT\nEND:VTIMEZONE\n"
                                "BEGIN:VTIMEZONE\nTZID:Old\n"
                                "BEGIN:STANDARD\nDTSTART:19700101T000000\nTZOFFSETFROM:+0200\nTZOFFSETTO:+0100\n"
                                "RRULE:FREQ=YEARLY;UNTIL=19800101T000000Z\nRDATE:20200101T000000,20210101T000000\n"
                                "END:STANDARD\n"
                                "BEGIN:DAYLIGHT\nDTSTART:19900408T000000\nTZOFFSETFROM:+0100\nTZOFFSETTO:+0500\n"
                                "RRULE:FREQ=YEARLY;BYMONTH=4;BYMONTHDAY=8,9,10,11,12,13,14;BYDAY=SU\n"
                                "END:DAYLIGHT\nEND:VTIMEZONE\n"
                                "BEGIN:VTIMEZONE\nTZID:Named\nX-LIC-LOCATION:Asia/Tokyo\nEND:VTIMEZONE\n";
    const std::pair<const char*, const char*> cases[] = {
        {";VALUE=DATE:20260715", "2026-07-14T22:00:00Z"},
        {":20260715", "2026-07-14T22:00:00Z"},
        {":20260715T120000", "2026-07-15T10:00:00Z"},
        {":20260715T120000Z", "2026-07-15T12:00:00Z"},
        {";TZID=America/New_York:20260115T120000", "2026-01-15T17:00:00Z"},
        {";TZID=\"/maker.org/2026_1/America/New_York\":20260715T120000", "2026-07-15T16:00:00Z"},
        {";TZID=Named:20260715T120000", "2026-07-15T03:00:00Z"},
        {";TZID=Unknown:20260715T120000", "2026-07-15T10:00:00Z"},
        // Rules of the file: a usual day each, the hour that is skipped, and that which comes twice.
        {";TZID=Own:20260115T120000", "2026-01-15T16:00:00Z"},
        {";TZID=Own:20260715T120000", "2026-07-15T15:00:00Z"},
        {";TZID=Own:20260308T023000", "2026-03-08T06:30:00Z"},
        {";TZID=Own:20260308T033000", "2026-03-08T06:30:00Z"},
        {";TZID=Own:20261025T023000", "2026-10-25T05:30:00Z"},
        {";TZID=Own:20261025T033000", "2026-10-25T07:30:00Z"},
        {";TZID=Old:19690101T120000", "1969-01-01T10:00:00Z"},
        {";TZID=Old:19850101T120000", "1985-01-01T11:00:00Z"},
        {";TZID=Old:20260411T120000", "2026-04-11T07:00:00Z"},
        {";TZID=Old:20200409T120000", "2020-04-09T11:00:00Z"},
        {";TZID=Old:20200412T120000", "2020-04-12T07:00:00Z"},
        {":20260230", "none"},
        {":20260715T250000", "none"},
        {":tomorrow", "none"},
        {":", "none"},
    };
    for (const auto& [due, expected] : cases) {
        const std::string todo = "BEGIN:VTODO\nDUE" + std::string(due) + "\nEND:VTODO\n";
        EXPECT_EQ(dueOf(calendarOf(defined + todo)), expected) << due;
        EXPECT_EQ(dueOf(calendarOf(todo + defined)), expected) << due; // whatever comes first
    }
}

TEST(ToDoFile, tellsWhatIsOpenAmongSeveral) {
    const std::string file = calendarOf("BEGIN:VEVENT\nUID:e\nSUMMARY:event\nBEGIN:VALARM\nEND:VALARM\nEND:VEVENT\n"
                                        "BEGIN:VTODO\nUID:1\nSTATUS:NEEDS-ACTION\nEND:VTODO\n"
                                        "BEGIN:VTODO\nUID:2\nSTATUS:COMPLETED\nEND:VTODO\n"
                                        "BEGIN:VTODO\nUID:3\nSTATUS:cancelled\nEND:VTODO\n"
                                        "BEGIN:VTODO\nUID:4\nCOMPLETED:20260101T000000Z\nEND:VTODO\n"
                                        "BEGIN:VTODO\nUID:5\nRRULE:FREQ=DAILY\nEND:VTODO\n"
                                        "BEGIN:VTODO\nUID:5\nRECURRENCE-ID:20260102\nEND:VTODO\n");
    std::string seen;
    for (const ToDo& todo : readToDos("\xEF\xBB\xBF" + file + file, berlin))
        seen += todo.uid + (todo.isOpen ? "o" : "") + (todo.isRecurring ? "r" : "") + ' ';
    EXPECT_EQ(seen, "1o 2 3 4 5or 1o 2 3 4 5or ");

    for (const char* broken : {"", "\n", "no calendar", "BEGIN:VCALENDAR\nBEGIN:VTODO\nUID:1\n", "END:VCALENDAR\n",
                               "BEGIN:VCALENDAR\nEND:VTODO\n", "BEGIN:VTODO\nBEGIN:VTODO\nEND:VTODO\nEND:VTODO\n"})
        EXPECT_THROW(readToDos(broken, berlin), ToDoFileError) << broken;
}

TEST(ToDoFile, completingChangesSixPropertiesAndNoOtherByte) {
    const Date now = *parseISO8601("2026-01-15T12:00:00Z");
    const auto completed = [&](const std::string& file, std::size_t index = 0) {
        return completeToDo(file, readToDos(file, berlin).at(index), now);
    };
    EXPECT_EQ(completed("BEGIN:VCALENDAR\r\nX-A;B=\"c:d\":e\\x\r\nBEGIN:VTODO\r\nDTSTAMP:2020\r\n 0101T000000Z\r\n"
                        "UNKNOWN:\xFF keep\r\n this\r\nSEQUENCE:4\r\nCATEGORIES:one,two\r\n\r\nstatus:NEEDS-ACTION\r\n"
                        "BEGIN:VALARM\r\nSEQUENCE:1\r\nEND:VALARM\r\nEND:VTODO\r\nEND:VCALENDAR"),
              "BEGIN:VCALENDAR\r\nX-A;B=\"c:d\":e\\x\r\nBEGIN:VTODO\r\nDTSTAMP:20260115T120000Z\r\n"
              "UNKNOWN:\xFF keep\r\n this\r\nSEQUENCE:5\r\nCATEGORIES:one,two\r\n\r\nSTATUS:COMPLETED\r\n"
              "COMPLETED:20260115T120000Z\r\nPERCENT-COMPLETE:100\r\nLAST-MODIFIED:20260115T120000Z\r\n"
              "BEGIN:VALARM\r\nSEQUENCE:1\r\nEND:VALARM\r\nEND:VTODO\r\nEND:VCALENDAR");
    // Only the one that is meant, with its own line ends; what stands there twice is said once.
    const std::string two = "BEGIN:VTODO\nUID:1\nSTATUS:IN-PROCESS\nEND:VTODO\r\n";
    EXPECT_EQ(completed(two + "BEGIN:VTODO\nPERCENT-COMPLETE:1\nPERCENT-COMPLETE:2\nEND:VTODO", 1),
              two + "BEGIN:VTODO\nPERCENT-COMPLETE:100\nSTATUS:COMPLETED\nCOMPLETED:20260115T120000Z\n"
                    "LAST-MODIFIED:20260115T120000Z\nDTSTAMP:20260115T120000Z\nSEQUENCE:1\nEND:VTODO");
}

} // namespace
} // namespace quillorn
