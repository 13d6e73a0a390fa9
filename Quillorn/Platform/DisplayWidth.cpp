#include "Platform/DisplayWidth.h"

#include "Platform/UTF8.h"

#include <cstdint>
#include <sys/ioctl.h>
#include <unicode/uchar.h>
#include <unicode/utf8.h>
#include <unistd.h>

namespace quillorn {

namespace {

constexpr UChar32 joiner = 0x200D;
constexpr UChar32 emojiForm = 0xFE0F;

std::size_t widthOf(UChar32 character) {
    switch (u_charType(character)) {
    case U_NON_SPACING_MARK:
    case U_ENCLOSING_MARK:
    case U_FORMAT_CHAR:
        return 0;
    default:
        break;
    }
    if (u_hasBinaryProperty(character, UCHAR_EMOJI_PRESENTATION) && character >= 0x1F1E6 && character <= 0x1F1FF)
        return 1; // half of a flag
    const int width = u_getIntPropertyValue(character, UCHAR_EAST_ASIAN_WIDTH);
    return width == U_EA_WIDE || width == U_EA_FULLWIDTH ? 2 : 1;
}

/// Walks over the characters and adds up their cells.
class WidthCounter {
  public:
    explicit WidthCounter(std::string_view text) : m_text(text) {}

    /// False at the end.
    bool next() {
        if (m_end == m_text.size())
            return false;
        const char* bytes = m_text.data();
        auto position = static_cast<std::int64_t>(m_end);
        UChar32 character = 0;
        // NOLINTNEXTLINE(bugprone-inc-dec-in-conditions): the macro is ICU's
        U8_NEXT_OR_FFFD(bytes, position, static_cast<std::int64_t>(m_text.size()), character);
        m_end = static_cast<std::size_t>(position);
        std::size_t width = widthOf(character);
        if (m_isJoined)
            width = 0; // drawn as one with the character before
        else if (character == emojiForm && m_last == 1)
            width = 1;
        m_isJoined = character == joiner;
        m_last = width;
        m_width += width;
        return true;
    }
    std::size_t end() const { return m_end; }
    std::size_t width() const { return m_width; }

  private:
    std::string_view m_text;
    std::size_t m_end = 0;
    std::size_t m_width = 0;
    std::size_t m_last = 0;
    bool m_isJoined = false;
};

} // namespace

std::size_t displayWidth(std::string_view text) {
    if (isASCII(text))
        return text.size();
    WidthCounter counter(text);
    while (counter.next()) {
    }
    return counter.width();
}

std::string fittedToWidth(std::string_view text, std::size_t width) {
    if (displayWidth(text) <= width)
        return std::string(text);
    if (width == 0)
        return {};
    WidthCounter counter(text);
    std::size_t end = 0;
    while (counter.next() && counter.width() < width)
        end = counter.end();
    return std::string(text.substr(0, end)) + "…";
}

std::size_t terminalWidth(std::FILE* stream) {
    constexpr std::size_t usual = 80;
    winsize size{};
    return ::ioctl(::fileno(stream), TIOCGWINSZ, &size) == 0 && size.ws_col > 0 ? size.ws_col : usual;
}

} // namespace quillorn
