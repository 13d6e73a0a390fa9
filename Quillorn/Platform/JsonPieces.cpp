#include "Platform/JsonPieces.h"

#include "Platform/Json.h"

#include <algorithm>
#include <fmt/core.h>

namespace quillorn {

namespace {

class Scanner {
  public:
    explicit Scanner(std::string_view text) : m_text(text) {}

    [[noreturn]] void fail(std::string_view wanted) const {
        throw JsonError(fmt::format("{} expected at byte {}", wanted, m_position));
    }

    bool take(char wanted) {
        skipBlanks();
        if (m_position == m_text.size() || m_text[m_position] != wanted)
            return false;
        ++m_position;
        return true;
    }

    void require(char wanted) {
        if (!take(wanted))
            fail(fmt::format("'{}'", wanted));
    }

    void requireEnd() {
        skipBlanks();
        if (m_position != m_text.size())
            fail("the end");
    }

    /// A value without the blanks around it.
    std::string_view takeValue() {
        skipBlanks();
        const std::size_t start = m_position;
        std::size_t depth = 0;
        do {
            skipPart(depth);
        } while (depth > 0);
        if (m_position == start)
            fail("a value");
        return m_text.substr(start, m_position - start);
    }

  private:
    void skipBlanks() { m_position = std::min(m_text.find_first_not_of(" \t\r\n", m_position), m_text.size()); }

    /// A bracket, a string, or what lies between those.
    void skipPart(std::size_t& depth) {
        if (m_position == m_text.size()) {
            if (depth > 0)
                fail("a closing bracket");
            return;
        }
        const char first = m_text[m_position];
        if (first == '"')
            return skipString();
        if (first == '{' || first == '[') {
            ++depth;
            ++m_position;
        } else if (first == '}' || first == ']') {
            if (depth == 0)
                return; // that of what the value stands in
            --depth;
            ++m_position;
        } else if (depth > 0) {
            m_position = std::min(m_text.find_first_of("\"{}[]", m_position), m_text.size());
        } else {
            m_position = std::min(m_text.find_first_of(",}] \t\r\n", m_position), m_text.size());
        }
    }

    void skipString() {
        for (++m_position; m_position < m_text.size(); ++m_position) {
            m_position = std::min(m_text.find_first_of("\"\\", m_position), m_text.size());
            if (m_position == m_text.size())
                break;
            if (m_text[m_position] == '"') {
                ++m_position;
                return;
            }
            ++m_position; // what is escaped
        }
        m_position = m_text.size();
        fail("'\"'");
    }

    std::string_view m_text;
    std::size_t m_position = 0;
};

} // namespace

std::vector<JsonMember> jsonMembers(std::string_view text) {
    Scanner scanner(text);
    std::vector<JsonMember> members;
    scanner.require('{');
    if (!scanner.take('}')) {
        do {
            const Json key = Json::parse(scanner.takeValue());
            if (key.asString() == nullptr)
                scanner.fail("a string as key");
            scanner.require(':');
            members.push_back({*key.asString(), scanner.takeValue()});
        } while (scanner.take(','));
        scanner.require('}');
    }
    scanner.requireEnd();
    return members;
}

void forEachJsonElement(std::string_view text, const std::function<void(std::string_view element)>& handle) {
    Scanner scanner(text);
    scanner.require('[');
    if (!scanner.take(']')) {
        do
            handle(scanner.takeValue());
        while (scanner.take(','));
        scanner.require(']');
    }
    scanner.requireEnd();
}

} // namespace quillorn
