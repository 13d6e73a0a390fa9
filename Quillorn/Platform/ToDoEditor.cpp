#include "Platform/ToDoFile.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>
#include <fmt/core.h>
#include <utility>

namespace quillorn {

namespace {

/// The form of a UTC time: 20260115T120000Z.
std::string stampOf(Date date) {
    std::string stamp = formatISO8601(date);
    std::erase_if(stamp, [](char character) { return character == '-' || character == ':'; });
    return stamp;
}

std::string lineEndOf(std::string_view line) {
    return line.ends_with("\r\n") ? "\r\n" : line.ends_with('\n') ? "\n" : "";
}

std::int64_t nextSequence(std::string_view value) {
    std::int64_t number = 0;
    std::from_chars(value.data(), value.data() + value.size(), number);
    // The format's integers have 32 bits.
    return number >= 0 && number < INT32_MAX ? number + 1 : 1;
}

class Editor {
  public:
    Editor(std::string_view text, const ToDo& todo, Date now) : m_text(text), m_todo(todo), m_stamp(stampOf(now)) {}

    std::string edit() {
        forEachOwnLine([&](const ContentLine& line) {
            if (Property* property = find(line))
                property->isThere = true;
        });
        forEachOwnLine([&](const ContentLine& line) { replace(line); });
        return m_result.append(m_text.substr(m_copied));
    }

  private:
    struct Property {
        std::string_view name;
        bool isThere = false;
        bool isWritten = false;
    };

    /// The lines of the to-do itself, not those of its alarms, but with those that begin and end a component.
    template <typename Handle>
    void forEachOwnLine(const Handle& handle) const {
        ContentLines lines(m_text.substr(m_todo.begin, m_todo.end - m_todo.begin));
        int depth = 0;
        while (const ContentLine* line = lines.next()) {
            const bool ends = line->isName("END");
            if (depth <= 1)
                handle(*line);
            depth += line->isName("BEGIN") - ends;
        }
    }

    Property* find(const ContentLine& line) {
        const auto found = std::find_if(m_properties.begin(), m_properties.end(),
                                        [&](const Property& each) { return line.isName(each.name); });
        return found != m_properties.end() ? &*found : nullptr;
    }

    std::string_view textOf(const ContentLine& line) const {
        return m_text.substr(m_todo.begin + line.begin, line.end - line.begin);
    }

    std::string valueOf(const Property& property, std::string_view former) const {
        if (property.name == "STATUS")
            return "COMPLETED";
        if (property.name == "PERCENT-COMPLETE")
            return "100";
        return property.name == "SEQUENCE" ? std::to_string(nextSequence(former)) : m_stamp;
    }

    void replace(const ContentLine& line) {
        const bool isFirst = std::exchange(m_isFirst, false);
        if (isFirst)
            m_lineEnd = lineEndOf(textOf(line));
        else if (line.isName("BEGIN") || line.isName("END")) // properties stand in front of alarms
            insertMissing(m_todo.begin + line.begin);
        Property* property = find(line);
        if (property == nullptr)
            return;
        copyUpTo(m_todo.begin + line.begin);
        m_copied = m_todo.begin + line.end;
        if (!std::exchange(property->isWritten, true)) // a second one goes
            write(*property, line.value, lineEndOf(textOf(line)));
    }

    void insertMissing(std::size_t position) {
        copyUpTo(position);
        for (Property& property : m_properties)
            if (!std::exchange(property.isThere, true))
                write(property, "", m_lineEnd);
    }

    void write(const Property& property, std::string_view former, std::string_view lineEnd) {
        m_result += fmt::format("{}:{}{}", property.name, valueOf(property, former), lineEnd);
    }

    void copyUpTo(std::size_t position) {
        m_result += m_text.substr(m_copied, position - m_copied);
        m_copied = position;
    }

    const std::string_view m_text;
    const ToDo& m_todo;
    const std::string m_stamp;
    bool m_isFirst = true;
    std::string m_lineEnd;
    std::string m_result;
    std::size_t m_copied = 0;
    std::array<Property, 6> m_properties{
        {{"STATUS"}, {"COMPLETED"}, {"PERCENT-COMPLETE"}, {"LAST-MODIFIED"}, {"DTSTAMP"}, {"SEQUENCE"}}};
};

} // namespace

std::string completeToDo(std::string_view text, const ToDo& todo, Date now) {
    return Editor(text, todo, now).edit();
}

} // namespace quillorn
