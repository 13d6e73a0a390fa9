#include "Platform/ToDoFile.h"
#include "Platform/ZoneRules.h"

#include <algorithm>
#include <map>

namespace quillorn {

namespace {

/// A DUE whose zone may be defined further down in the file.
struct DueText {
    CalendarTime time;
    std::string zone;
};

std::optional<DueText> dueOf(const ContentLine& line) {
    const std::optional<CalendarTime> time = parseCalendarTime(line.value);
    if (!time)
        return std::nullopt;
    return DueText{*time, std::string(line.parameter("TZID").value_or(""))};
}

class Reader {
  public:
    Reader(std::string_view text, const ZoneRules& userZone) : m_lines(text), m_zones(userZone) {}

    std::vector<ToDo> read() {
        while (const ContentLine* line = m_lines.next()) {
            m_line = line;
            if (line->isName("BEGIN"))
                begin();
            else if (line->isName("END"))
                end();
            else if (isDirectlyIn("VTODO"))
                take();
            else if (m_isInZone)
                m_zones.take(*line);
        }
        if (!m_open.empty())
            throw ToDoFileError("a component has no end");
        if (m_components == 0)
            throw ToDoFileError("it holds no calendar");
        for (std::size_t i = 0; i < m_todos.size(); ++i)
            if (m_dues[i])
                m_todos[i].due = m_zones.instant(m_dues[i]->time, m_dues[i]->zone);
        return std::move(m_todos);
    }

  private:
    /// Deeper ones are nobody's.
    static constexpr std::size_t maximumDepth = 64;

    bool isDirectlyIn(std::string_view component) const { return !m_open.empty() && m_open.back() == component; }

    void begin() {
        std::string name(m_line->value);
        std::transform(name.begin(), name.end(), name.begin(),
                       [](char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; });
        if (m_open.size() == maximumDepth)
            throw ToDoFileError("its components are nested too deeply");
        ++m_components;
        m_isInZone |= name == "VTIMEZONE";
        if (name == "VTODO") {
            if (std::find(m_open.begin(), m_open.end(), "VTODO") != m_open.end())
                throw ToDoFileError("a to-do stands in another one");
            m_todo = {};
            m_due.reset();
            m_isOverride = false;
            m_todo.begin = m_line->begin;
        }
        m_open.push_back(std::move(name));
        if (m_isInZone)
            m_zones.begin(m_open.back());
    }

    void end() {
        if (m_open.empty() || !equalsIgnoringCase(m_line->value, m_open.back()))
            throw ToDoFileError("a component ends that has not begun");
        const std::string name = std::move(m_open.back());
        m_open.pop_back();
        if (m_isInZone)
            m_zones.end(name);
        if (name == "VTIMEZONE")
            m_isInZone = false;
        if (name != "VTODO" || m_isOverride)
            return;
        m_todo.end = m_line->end;
        m_todos.push_back(std::move(m_todo));
        m_dues.push_back(std::move(m_due));
    }

    void take() {
        const ContentLine& line = *m_line;
        if (line.isName("UID"))
            m_todo.uid = unescapedText(line.value);
        else if (line.isName("SUMMARY"))
            m_todo.summary = unescapedText(line.value);
        else if (line.isName("DESCRIPTION"))
            m_todo.description = unescapedText(line.value);
        else if (line.isName("DUE"))
            m_due = dueOf(line);
        else if (line.isName("STATUS"))
            m_todo.isOpen &=
                !equalsIgnoringCase(line.value, "COMPLETED") && !equalsIgnoringCase(line.value, "CANCELLED");
        else if (line.isName("COMPLETED"))
            m_todo.isOpen = false;
        else if (line.isName("RRULE") || line.isName("RDATE"))
            m_todo.isRecurring = true;
        else if (line.isName("RECURRENCE-ID"))
            m_isOverride = true;
    }

    ContentLines m_lines;
    const ContentLine* m_line = nullptr;
    std::vector<std::string> m_open;
    std::size_t m_components = 0;
    bool m_isInZone = false;
    TimeZoneDefinitions m_zones;
    ToDo m_todo;
    std::optional<DueText> m_due;
    bool m_isOverride = false;
    std::vector<ToDo> m_todos;
    std::vector<std::optional<DueText>> m_dues; // as m_todos
};

} // namespace

std::vector<ToDo> readToDos(std::string_view text, const ZoneRules& userZone) {
    return Reader(text, userZone).read();
}

} // namespace quillorn
