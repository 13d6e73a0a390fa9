#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace quillorn {

/// One property of an iCalendar text, as it stands in the file.
struct ContentLine {
    /// Where it stands, folds and line end included.
    std::size_t begin = 0;
    std::size_t end = 0;
    /// In the letters of the file; compare with isName().
    std::string_view name{};
    /// Between name and value, with the ';' in front: ";TZID=Europe/Berlin"; empty for none.
    std::string_view parameters{};
    /// Not yet unescaped.
    std::string_view value{};

    bool isName(std::string_view upperCase) const;
    /// The value of a parameter, without its quotes; absent when it is not given.
    std::optional<std::string_view> parameter(std::string_view upperCaseName) const;
};

/// Reads the content lines of an iCalendar text one by one. Takes line ends of either kind; what has no value is a line
/// with a name alone.
class ContentLines {
  public:
    explicit ContentLines(std::string_view text);
    /// The next line, whose texts hold until the next call; null at the end. Empty lines are passed over.
    const ContentLine* next();

  private:
    std::size_t endOfPhysicalLine(std::size_t begin) const;
    void split(std::string_view line);

    std::string_view m_text;
    std::size_t m_position = 0;
    ContentLine m_line;
    std::string m_unfolded;
};

/// Whether both are the same in ASCII, whatever the case.
bool equalsIgnoringCase(std::string_view text, std::string_view upperCase);
/// The text that an escaped value stands for; bytes that are no UTF-8 come out as U+FFFD.
std::string unescapedText(std::string_view value);

} // namespace quillorn
