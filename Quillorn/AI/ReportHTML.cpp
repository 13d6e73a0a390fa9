#include "AI/ReportHTML.h"

#include "Platform/Text.h"

#include <array>

namespace quillorn {

namespace {

constexpr std::array<std::string_view, 3> subBulletMarks = {"◦", "‣", "·"};
constexpr std::array<std::string_view, 3> bulletMarks = {"-", "*", "•"};

std::string escaped(std::string_view text) {
    std::string result;
    result.reserve(text.size());
    for (const char c : text)
        if (c == '&')
            result += "&amp;";
        else if (c == '<')
            result += "&lt;";
        else if (c == '>')
            result += "&gt;";
        else
            result += c;
    return result;
}

/// Escaped, and **words** in bold; at least one character must stand between the stars.
std::string inlineHTML(std::string_view text) {
    constexpr std::string_view stars = "**";
    const std::string safe = escaped(text);
    const std::string_view source = safe;
    std::string result;
    std::size_t position = 0;
    while (true) {
        const std::size_t opening = source.find(stars, position);
        const std::size_t closing = opening == std::string_view::npos ? opening : source.find(stars, opening + 3);
        if (closing == std::string_view::npos)
            return result.append(source.substr(position));
        result.append(source.substr(position, opening - position)).append("<b>");
        result.append(source.substr(opening + 2, closing - opening - 2)).append("</b>");
        position = closing + 2;
    }
}

/// The length of the mark that `line` begins with; 0 for none.
std::size_t markLength(std::string_view line, const std::array<std::string_view, 3>& marks) {
    for (const std::string_view mark : marks)
        if (line.starts_with(mark))
            return mark.size();
    return 0;
}

/// HTML that grows line by line. Where a sub-list is open its list and its item are open too; where a list is open the
/// last item is, since a sub-list may follow.
class ReportWriter {
  public:
    void add(std::string_view line) {
        if (line.empty())
            return closeLists();
        if (const std::size_t mark = markLength(line, subBulletMarks))
            return addSubBullet(trimBlanks(line.substr(mark)));
        if (const std::size_t mark = line.starts_with("**") ? 0 : markLength(line, bulletMarks))
            return addBullet(trimBlanks(line.substr(mark)));
        closeLists();
        m_html += "<p>" + inlineHTML(line) + "</p>";
    }

    std::string finish() {
        closeLists();
        return std::move(m_html);
    }

  private:
    void addBullet(std::string_view text) {
        closeSubList();
        m_html += m_isListOpen ? "</li><li>" : "<ul><li>";
        m_isListOpen = true;
        m_html += inlineHTML(text);
    }

    void addSubBullet(std::string_view text) {
        if (!m_isListOpen)
            m_html += "<ul><li>";
        m_isListOpen = true;
        m_html += m_isSubListOpen ? "</li><li>" : "<ul><li>";
        m_isSubListOpen = true;
        m_html += inlineHTML(text);
    }

    void closeSubList() {
        if (m_isSubListOpen)
            m_html += "</li></ul>";
        m_isSubListOpen = false;
    }

    void closeLists() {
        closeSubList();
        if (m_isListOpen)
            m_html += "</li></ul>";
        m_isListOpen = false;
    }

    std::string m_html = R"(<div style="font-family:Calibri,Helvetica,Arial,sans-serif;font-size:11pt">)";
    bool m_isListOpen = false;
    bool m_isSubListOpen = false;
};

} // namespace

std::string reportHTML(std::string_view report) {
    ReportWriter writer;
    while (true) {
        const std::size_t end = report.find('\n');
        writer.add(trimWhitespaceAndNewlines(report.substr(0, end)));
        if (end == std::string_view::npos)
            return writer.finish() + "</div>";
        report.remove_prefix(end + 1);
    }
}

} // namespace quillorn
