#include "Models/TaskSentence.h"

#include "Models/PhraseReader.h"
#include "Models/WhenPhrase.h"
#include "Platform/Calendar.h"
#include "Platform/Text.h"

#include <algorithm>
#include <array>

namespace quillorn {

namespace {

bool beginsWord(std::string_view text, std::size_t position) {
    return position == 0 || std::string_view(" \t\r\n([,;\"").find(text[position - 1]) != std::string_view::npos;
}

/// A sentence on its way to a result: words that are understood become marked, and the rest is the title.
class SentenceReading {
  public:
    SentenceReading(std::string_view sentence, const TaskNames& names, Date now, const Calendar& calendar,
                    const Text& text)
        : m_sentence(sentence),
          m_names(names),
          m_now(now),
          m_calendar(calendar),
          m_text(text) {}

    ParsedTaskResult read() {
        for (std::size_t position = 0; position < m_sentence.size();) {
            const std::size_t length = beginsWord(m_sentence, position) ? lengthUnderstood(position) : 0;
            position += std::max<std::size_t>(length, 1);
        }
        settleDue();
        std::ranges::sort(m_understood, {}, &Span::begin);
        m_result.title = title();
        return std::move(m_result);
    }

  private:
    struct Span {
        std::size_t begin, end;
    };
    struct Found {
        Span span;
        When due;
    };

    std::size_t lengthUnderstood(std::size_t position) {
        const std::string_view rest = m_sentence.substr(position);
        if (const std::size_t length = readDue(position, rest))
            return length;
        if (const std::size_t length = readPriority(rest)) {
            understand(position, length);
            return length;
        }
        return readName(position, rest);
    }

    void understand(std::size_t position, std::size_t length) {
        const std::size_t end = position + length;
        const bool isBracketed =
            position > 0 && m_sentence[position - 1] == '(' && end < m_sentence.size() && m_sentence[end] == ')';
        m_understood.push_back(isBracketed ? Span{position - 1, end + 1} : Span{position, end});
    }

    /// Also where it is the second of its kind and stays, so that its parts are not looked at.
    std::size_t readDue(std::size_t position, std::string_view rest) {
        PhraseReader reader(rest);
        if (const auto due = takeDay(reader, m_now, m_calendar)) {
            if (!m_day)
                m_day = Found{{position, position + reader.position()}, *due};
            return reader.position();
        }
        reader = PhraseReader(rest);
        const auto time = takeAt(reader);
        if (time && !m_time)
            m_time = Found{{position, position + reader.position()}, {.time = time}};
        return time ? reader.position() : 0;
    }

    std::size_t readPriority(std::string_view rest) {
        constexpr std::array<std::string_view, 4> words = {"low", "medium", "high", "urgent"};
        for (std::size_t level = 0; level < words.size() && !m_result.priority; ++level) {
            PhraseReader reader(rest);
            const bool isMarked = reader.take("!");
            if (!reader.take(words[level]) || (!isMarked && (reader.takeBlanks() == 0 || !reader.take("priority"))) ||
                !endsWord(reader.rest()))
                continue;
            m_result.priority = static_cast<TaskPriority>(level);
            return reader.position();
        }
        return 0;
    }

    std::size_t readName(std::size_t position, std::string_view rest) {
        const bool isTag = rest.front() == '#';
        if (!isTag && (rest.front() != '@' || m_result.projectName))
            return 0;
        const std::string* name = longestName(rest.substr(1), isTag ? m_names.tags : m_names.projects);
        if (name == nullptr)
            return 0;
        if (!isTag)
            m_result.projectName = *name;
        else if (std::ranges::find(m_result.tagNames, *name) == m_result.tagNames.end())
            m_result.tagNames.push_back(*name);
        const std::size_t length = 1 + prefixLike(*name, rest.substr(1)).size();
        understand(position, length);
        return length;
    }

    const std::string* longestName(std::string_view rest, const std::vector<std::string>& names) const {
        const std::string* longest = nullptr;
        for (const std::string& name : names) {
            const std::string_view found = prefixLike(name, rest);
            if (!found.empty() && (longest == nullptr || name.size() > longest->size()) &&
                m_text.compareIgnoringCase(found, name) == 0 && endsWord(rest.substr(found.size())))
                longest = &name;
        }
        return longest;
    }

    /// As many characters of `rest` as `name` has.
    static std::string_view prefixLike(std::string_view name, std::string_view rest) {
        // Longer ones are nobody's word in a sentence, and looking far ahead at each sign would take long.
        const std::string_view near = rest.substr(0, 4 * name.size());
        return characterPrefix(near, characterCount(name));
    }

    /// A time that stands apart belongs to the day that has none; without a day it is the next such time.
    void settleDue() {
        if (!m_day && !m_time)
            return;
        const bool takesTime = m_time && (!m_day || !m_day->due.time);
        When due = m_day ? m_day->due : When{};
        if (takesTime)
            due.time = m_time->due.time;
        m_result.dueDate = due.nextDate(m_now, m_calendar);
        m_result.dueHasTime = due.time.has_value();
        for (const Found* found : {m_day ? &*m_day : nullptr, takesTime ? &*m_time : nullptr})
            if (found != nullptr)
                understand(found->span.begin, found->span.end - found->span.begin);
    }

    std::string title() const {
        std::string title;
        bool hasComma = false;
        std::size_t begin = 0;
        for (const Span& span : m_understood) {
            appendPiece(title, m_sentence.substr(begin, span.begin - begin), hasComma);
            begin = span.end;
        }
        appendPiece(title, m_sentence.substr(begin), hasComma);
        const bool isEmpty = title.find_first_not_of(" \t\r\n,.;:!?()[]\"'-") == std::string::npos;
        return m_understood.empty() || isEmpty ? std::string(trimWhitespaceAndNewlines(m_sentence)) : title;
    }

    /// What stood between two pieces leaves one blank, with a comma before it where there was one (`hasComma`).
    static void appendPiece(std::string& title, std::string_view piece, bool& hasComma) {
        const auto hasOne = [](std::string_view stray) { return stray.find(',') != std::string_view::npos; };
        const std::size_t first = piece.find_first_not_of(" \t\r\n,");
        if (first == std::string_view::npos)
            return;
        hasComma = hasComma || hasOne(piece.substr(0, first));
        const std::size_t end = piece.find_last_not_of(" \t\r\n,") + 1;
        if (!title.empty() && std::string_view(".;:!?)]").find(piece[first]) == std::string_view::npos)
            title += hasComma ? ", " : " ";
        title += piece.substr(first, end - first);
        hasComma = hasOne(piece.substr(end));
    }

    std::string_view m_sentence;
    const TaskNames& m_names;
    Date m_now;
    const Calendar& m_calendar;
    const Text& m_text;
    std::vector<Span> m_understood;
    std::optional<Found> m_day;
    std::optional<Found> m_time;
    ParsedTaskResult m_result;
};

} // namespace

ParsedTaskResult readTaskSentence(std::string_view sentence, const TaskNames& names, Date now, const Calendar& calendar,
                                  const Text& text) {
    return SentenceReading(sentence, names, now, calendar, text).read();
}

} // namespace quillorn
