#include "Fuzz/Harness.h"
#include "Platform/ToDoFile.h"
#include "Platform/ZoneRules.h"

#include <algorithm>
#include <array>

using namespace quillorn;

namespace {

constexpr std::array edited{"STATUS", "COMPLETED", "PERCENT-COMPLETE", "LAST-MODIFIED", "DTSTAMP", "SEQUENCE"};

bool isEdited(const ContentLine& line) {
    return std::any_of(edited.begin(), edited.end(), [&](const char* name) { return line.isName(name); });
}

/// All of the text but the six properties of that to-do itself.
std::string restOf(std::string_view text, const ToDo& todo) {
    std::string rest(text.substr(0, todo.begin));
    const std::string_view own = text.substr(todo.begin, todo.end - todo.begin);
    ContentLines lines(own);
    std::size_t copied = 0;
    int depth = 0;
    while (const ContentLine* line = lines.next()) {
        depth += line->isName("BEGIN");
        if (depth == 1 && isEdited(*line)) {
            rest += own.substr(copied, line->begin - copied);
            copied = line->end;
        }
        depth -= line->isName("END");
    }
    return (rest += own.substr(copied)) += text.substr(todo.end);
}

} // namespace

std::vector<std::string> quillorn::seeds() {
    return {
        "BEGIN:VCALENDAR\r\nBEGIN:VTODO\r\nUID:1\r\nSUMMARY;X=\"a:b\":Long\r\n er\r\nDUE;TZID=Own:20260701T100000\r\n"
        "STATUS:NEEDS-ACTION\r\nSEQUENCE:3\r\nBEGIN:VALARM\r\nDESCRIPTION:x\r\nEND:VALARM\r\nEND:VTODO\r\n"
        "BEGIN:VTIMEZONE\r\nTZID:Own\r\nBEGIN:STANDARD\r\nDTSTART:20001029T030000\r\nTZOFFSETFROM:+0200\r\n"
        "TZOFFSETTO:+0100\r\nRRULE:FREQ=YEARLY;BYMONTH=10;BYDAY=-1SU;UNTIL=20300101T000000Z\r\nEND:STANDARD\r\n"
        "END:VTIMEZONE\r\nEND:VCALENDAR\r\n",
        "\xEF\xBB\xBF"
        "BEGIN:VCALENDAR\nBEGIN:VTODO\nRRULE:FREQ=DAILY\nDUE;VALUE=DATE:20260115\nEND:VTODO\n"
        "BEGIN:VTODO\nRECURRENCE-ID:20260101\nDESCRIPTION:a\\nb\\,\nEND:VTODO\nEND:VCALENDAR",
        "BEGIN:VTODO\nCOMPLETED:20260101T000000Z\nDTSTAMP:1\nDTSTAMP:2\nPERCENT-COMPLETE:5\nEND:VTODO"};
}

/// A file is refused or read; each to-do that is completed reads back as completed, and nothing else has changed.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const ZoneRules zone("Europe/Berlin");
    const std::string_view text = bytesOf(data, size);
    std::vector<ToDo> todos;
    try {
        todos = readToDos(text, zone);
    } catch (const ToDoFileError&) {
        return 0;
    }
    for (std::size_t i = 0; i < todos.size(); ++i) {
        const std::string after = completeToDo(text, todos[i], Date{});
        const std::vector<ToDo> again = readToDos(after, zone);
        require(again.size() == todos.size(), "a to-do came or went");
        require(!again[i].isOpen, "it is still open");
        require(again[i].summary == todos[i].summary && again[i].due == todos[i].due, "it says something else");
        require(restOf(after, again[i]) == restOf(text, todos[i]), "something else has changed");
    }
    return 0;
}
