#include "Platform/ContentLines.h"

#include "Platform/UTF8.h"

#include <algorithm>

namespace quillorn {

namespace {

constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";

char upperCased(char character) {
    return character >= 'a' && character <= 'z' ? static_cast<char>(character - 'a' + 'A') : character;
}

/// Where one of `ends` stands outside of quotes.
std::size_t findUnquoted(std::string_view text, std::size_t from, std::string_view ends) {
    bool isQuoted = false;
    for (std::size_t i = from; i < text.size(); ++i) {
        if (text[i] == '"')
            isQuoted = !isQuoted;
        else if (!isQuoted && ends.find(text[i]) != std::string_view::npos)
            return i;
    }
    return std::string_view::npos;
}

std::string_view withoutLineEnd(std::string_view line) {
    if (line.ends_with('\n'))
        line.remove_suffix(1);
    if (line.ends_with('\r'))
        line.remove_suffix(1);
    return line;
}

std::string withoutEscapes(std::string_view value) {
    std::string text;
    text.reserve(value.size());
    for (std::size_t i = 0; i < value.size(); ++i) {
        const bool isEscape = value[i] == '\\' && i + 1 < value.size();
        const char escaped = isEscape ? value[i + 1] : '\0';
        if (escaped == 'n' || escaped == 'N')
            text += '\n';
        else if (isEscape && std::string_view("\\;,:\"").find(escaped) != std::string_view::npos)
            text += escaped;
        else {
            text += value[i];
            continue;
        }
        ++i;
    }
    return text;
}

} // namespace

bool equalsIgnoringCase(std::string_view text, std::string_view upperCase) {
    return text.size() == upperCase.size() &&
           std::equal(text.begin(), text.end(), upperCase.begin(), [](char a, char b) { return upperCased(a) == b; });
}

bool ContentLine::isName(std::string_view upperCase) const {
    return equalsIgnoringCase(name, upperCase);
}

std::optional<std::string_view> ContentLine::parameter(std::string_view upperCaseName) const {
    std::string_view rest = parameters;
    while (!rest.empty()) {
        rest.remove_prefix(1); // the ';'
        const std::string_view one = rest.substr(0, findUnquoted(rest, 0, ";"));
        rest.remove_prefix(one.size());
        const std::size_t equals = one.find('=');
        if (equals == std::string_view::npos || !equalsIgnoringCase(one.substr(0, equals), upperCaseName))
            continue;
        const std::string_view found = one.substr(equals + 1);
        const bool isQuoted = found.size() >= 2 && found.front() == '"' && found.back() == '"';
        return isQuoted ? found.substr(1, found.size() - 2) : found;
    }
    return std::nullopt;
}

ContentLines::ContentLines(std::string_view text) : m_text(text) {
    if (text.starts_with(byteOrderMark))
        m_position = byteOrderMark.size();
}

std::size_t ContentLines::endOfPhysicalLine(std::size_t begin) const {
    const std::size_t end = m_text.find('\n', begin);
    return end == std::string_view::npos ? m_text.size() : end + 1;
}

const ContentLine* ContentLines::next() {
    const auto isFold = [&](std::size_t at) { return at < m_text.size() && (m_text[at] == ' ' || m_text[at] == '\t'); };
    while (m_position < m_text.size()) {
        const std::size_t begin = m_position;
        std::size_t end = endOfPhysicalLine(begin);
        std::string_view line = withoutLineEnd(m_text.substr(begin, end - begin));
        if (isFold(end)) {
            m_unfolded = line;
            while (isFold(end)) {
                const std::size_t part = end + 1;
                end = endOfPhysicalLine(part);
                m_unfolded += withoutLineEnd(m_text.substr(part, end - part));
            }
            line = m_unfolded;
        }
        m_position = end;
        if (line.empty())
            continue;
        split(line);
        m_line.begin = begin;
        m_line.end = end;
        return &m_line;
    }
    return nullptr;
}

void ContentLines::split(std::string_view line) {
    std::size_t nameEnd = 0; // names are short, which no search by the library makes use of
    while (nameEnd < line.size() && line[nameEnd] != ';' && line[nameEnd] != ':')
        ++nameEnd;
    const std::size_t colon =
        nameEnd < line.size() && line[nameEnd] == ';' ? findUnquoted(line, nameEnd, ":") : nameEnd;
    m_line.name = line.substr(0, nameEnd);
    if (colon >= line.size()) {
        m_line.parameters = m_line.value = {};
        return;
    }
    m_line.parameters = line.substr(nameEnd, colon - nameEnd);
    m_line.value = line.substr(colon + 1);
}

std::string unescapedText(std::string_view value) {
    std::string text;
    if (value.find('\\') == std::string_view::npos)
        text = value;
    else
        text = withoutEscapes(value);
    return validUTF8Length(text) == text.size() ? text : repairedUTF8(text);
}

} // namespace quillorn
