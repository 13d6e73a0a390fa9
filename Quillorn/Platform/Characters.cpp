#include "Platform/Text.h"
#include "Platform/UTF8.h"

#include <algorithm>
#include <array>
#include <memory>
#include <stdexcept>
#include <unicode/brkiter.h>
#include <unicode/locid.h>
#include <unicode/uchar.h>
#include <unicode/unistr.h>
#include <unicode/utext.h>

namespace quillorn {

namespace {

/// Steps from one user-perceived character to the next; positions are bytes.
class CharacterBoundaries {
  public:
    explicit CharacterBoundaries(std::string_view text) {
        UErrorCode error = U_ZERO_ERROR;
        m_text = utext_openUTF8(m_text, text.data(), static_cast<std::int64_t>(text.size()), &error);
        iterator().setText(m_text, error);
        if (U_FAILURE(error)) {
            utext_close(m_text);
            throw std::runtime_error(std::string("Can't count characters: ") + u_errorName(error));
        }
        iterator().first();
    }
    CharacterBoundaries(const CharacterBoundaries&) = delete;
    CharacterBoundaries& operator=(const CharacterBoundaries&) = delete;
    ~CharacterBoundaries() { utext_close(m_text); }

    /// False at the end of the text.
    bool next() { return iterator().next() != icu::BreakIterator::DONE; }
    std::size_t position() const { return static_cast<std::size_t>(iterator().current()); }

  private:
    /// One for each thread, since making one takes far longer than a title's characters.
    static icu::BreakIterator& iterator() {
        thread_local const std::unique_ptr<icu::BreakIterator> shared = [] {
            UErrorCode error = U_ZERO_ERROR;
            std::unique_ptr<icu::BreakIterator> made(
                icu::BreakIterator::createCharacterInstance(icu::Locale::getRoot(), error));
            if (U_FAILURE(error))
                throw std::runtime_error(std::string("Can't count characters: ") + u_errorName(error));
            return made;
        }();
        return *shared;
    }

    UText* m_text = nullptr;
};

/// In bytes; far beyond any title, and within what ICU counts.
constexpr std::size_t maximumNormalized = 1 << 24;

/// Where each byte is a character of its own.
bool isPlain(std::string_view text) {
    return isASCII(text) && text.find('\r') == std::string_view::npos;
}

// White_Space of the Unicode character database, in its two kinds.
constexpr std::array<std::string_view, 18> blanks = {"\t",           " ",
                                                     "\xC2\xA0",     "\xE1\x9A\x80",
                                                     "\xE2\x80\x80", "\xE2\x80\x81",
                                                     "\xE2\x80\x82", "\xE2\x80\x83",
                                                     "\xE2\x80\x84", "\xE2\x80\x85",
                                                     "\xE2\x80\x86", "\xE2\x80\x87",
                                                     "\xE2\x80\x88", "\xE2\x80\x89",
                                                     "\xE2\x80\x8A", "\xE2\x80\xAF",
                                                     "\xE2\x81\x9F", "\xE3\x80\x80"};
constexpr std::array<std::string_view, 7> lineEnds = {"\n",       "\v",           "\f",          "\r",
                                                      "\xC2\x85", "\xE2\x80\xA8", "\xE2\x80\xA9"};

template <typename Predicate>
std::string_view trim(std::string_view text, Predicate removable) {
    // `removable` says how long the removable character at that end is, or 0.
    while (const std::size_t length = removable([&](std::string_view mark) { return text.starts_with(mark); }))
        text.remove_prefix(length);
    while (const std::size_t length = removable([&](std::string_view mark) { return text.ends_with(mark); }))
        text.remove_suffix(length);
    return text;
}

template <typename Marks, typename Matches>
std::size_t lengthOfMatch(const Marks& marks, Matches matches) {
    const auto found = std::find_if(marks.begin(), marks.end(), matches);
    return found == marks.end() ? 0 : found->size();
}

} // namespace

std::size_t characterCount(std::string_view text) {
    if (isPlain(text))
        return text.size();
    std::size_t count = 0;
    for (CharacterBoundaries boundaries(text); boundaries.next();)
        ++count;
    return count;
}

std::string_view characterPrefix(std::string_view text, std::size_t count) {
    if (text.size() <= count)
        return text; // no character is shorter than a byte
    if (isPlain(text.substr(0, count + 1)))
        return text.substr(0, count);
    CharacterBoundaries boundaries(text);
    while (count > 0 && boundaries.next())
        --count;
    return text.substr(0, boundaries.position());
}

std::string normalizedText(std::string_view text) {
    const bool isLong = text.size() > maximumNormalized;
    icu::UnicodeString lower = icu::UnicodeString::fromUTF8(
        {text.data(), static_cast<std::int32_t>(isLong ? maximumNormalized : text.size())});
    lower.toLower(icu::Locale::getRoot());
    icu::UnicodeString collapsed;
    bool isGap = false;
    for (std::int32_t i = 0; i < lower.length(); i = lower.moveIndex32(i, 1)) {
        const UChar32 character = lower.char32At(i);
        if (u_isUWhiteSpace(character)) {
            isGap = !collapsed.isEmpty();
            continue;
        }
        if (isGap)
            collapsed.append(u' ');
        isGap = false;
        collapsed.append(character);
    }
    std::string result;
    return collapsed.toUTF8String(result);
}

std::string_view trimBlanks(std::string_view text) {
    return trim(text, [](auto matches) { return lengthOfMatch(blanks, matches); });
}

std::string_view trimWhitespaceAndNewlines(std::string_view text) {
    return trim(text, [](auto matches) {
        const std::size_t length = lengthOfMatch(blanks, matches);
        return length > 0 ? length : lengthOfMatch(lineEnds, matches);
    });
}

} // namespace quillorn
