#include "Platform/Text.h"

#include "Platform/Locale.h"
#include "Platform/UTF8.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <limits>
#include <stdexcept>
#include <unicode/coll.h>
#include <unicode/locid.h>
#include <unicode/normalizer2.h>
#include <unicode/uchar.h>
#include <unicode/unistr.h>

namespace quillorn {

namespace {

void check(UErrorCode error) {
    if (U_FAILURE(error))
        throw std::runtime_error(std::string("Can't set up text comparison: ") + u_errorName(error));
}

/// ICU counts with 32 bits; what is cut off is far beyond any text of this program.
icu::StringPiece piece(std::string_view text) {
    constexpr std::size_t longest = std::numeric_limits<std::int32_t>::max() / 4;
    // NOLINTNEXTLINE(bugprone-suspicious-stringview-data-usage): the size is the second argument
    return {text.data(), static_cast<std::int32_t>(std::min(text.size(), longest))};
}

/// Equal for texts that differ in case or composition only.
icu::UnicodeString foldKey(std::string_view text, bool isTurkic) {
    UErrorCode error = U_ZERO_ERROR;
    const icu::Normalizer2* composer = icu::Normalizer2::getNFCInstance(error);
    check(error);
    icu::UnicodeString key = composer->normalize(icu::UnicodeString::fromUTF8(piece(text)), error);
    key.foldCase(isTurkic ? U_FOLD_CASE_EXCLUDE_SPECIAL_I : U_FOLD_CASE_DEFAULT);
    key = composer->normalize(key, error);
    check(error);
    return key;
}

icu::UnicodeString withoutAccents(const icu::UnicodeString& text) {
    UErrorCode error = U_ZERO_ERROR;
    const icu::UnicodeString decomposed = icu::Normalizer2::getNFDInstance(error)->normalize(text, error);
    check(error);
    icu::UnicodeString bare;
    for (std::int32_t i = 0; i < decomposed.length(); i = decomposed.moveIndex32(i, 1))
        if (const UChar32 character = decomposed.char32At(i); u_charType(character) != U_NON_SPACING_MARK)
            bare.append(character);
    return bare;
}

constexpr char lowerASCII(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c + ('a' - 'A')) : c;
}

// Eight characters at a time.
constexpr std::uint64_t eachByte = 0x0101010101010101;
constexpr std::uint64_t highBits = 0x80 * eachByte;

/// How many characters at the beginning are ASCII.
std::size_t lengthOfASCII(std::string_view text) {
    std::size_t length = 0;
    for (std::uint64_t word = 0; length + sizeof word <= text.size(); length += sizeof word) {
        std::memcpy(&word, text.data() + length, sizeof word);
        if ((word & highBits) != 0)
            break;
    }
    while (length < text.size() && static_cast<unsigned char>(text[length]) < 0x80)
        ++length;
    return length;
}

void appendLowerASCII(std::string& key, std::string_view text) {
    std::size_t at = key.size();
    key += text;
    for (std::uint64_t word = 0; at + sizeof word <= key.size(); at += sizeof word) {
        std::memcpy(&word, key.data() + at, sizeof word);
        const std::uint64_t fromA = word + (0x80 - 'A') * eachByte;
        const std::uint64_t beyondZ = word + (0x7F - 'Z') * eachByte;
        word |= (fromA & ~beyondZ & highBits) >> 2; // the bit by which cases differ
        std::memcpy(key.data() + at, &word, sizeof word);
    }
    for (; at < key.size(); ++at)
        key[at] = lowerASCII(key[at]);
}

std::unique_ptr<icu::Collator> makeCollator(const icu::Locale& locale, icu::Collator::ECollationStrength strength,
                                            UColAttributeValue numeric) {
    UErrorCode error = U_ZERO_ERROR;
    std::unique_ptr<icu::Collator> collator(icu::Collator::createInstance(locale, error));
    check(error);
    collator->setAttribute(UCOL_NUMERIC_COLLATION, numeric, error);
    check(error);
    collator->setStrength(strength);
    return collator;
}

int compareWith(const icu::Collator& collator, std::string_view a, std::string_view b) {
    UErrorCode error = U_ZERO_ERROR;
    const UCollationResult result = collator.compareUTF8(piece(a), piece(b), error);
    check(error);
    return static_cast<int>(result); // -1, 0 or 1
}

} // namespace

struct Text::State {
    explicit State(std::string_view localeName)
        : name(icuLocaleName(localeName)),
          locale(name.c_str()),
          isTurkic(std::strcmp(locale.getLanguage(), "tr") == 0 || std::strcmp(locale.getLanguage(), "az") == 0),
          standard(makeCollator(locale, icu::Collator::TERTIARY, UCOL_ON)),
          caseless(makeCollator(locale, icu::Collator::SECONDARY, UCOL_OFF)) {}

    std::string name;
    icu::Locale locale;
    bool isTurkic;
    // Const once made: ICU's const functions may be called from several threads at once.
    std::unique_ptr<const icu::Collator> standard;
    std::unique_ptr<const icu::Collator> caseless;
};

struct Text::Needle::State {
    bool isTurkic = false;
    icu::UnicodeString key;
    /// The key where it is ASCII, for a search without conversion; else empty.
    std::string asciiKey;

    bool isInASCII(std::string_view text) const {
        return !asciiKey.empty() &&
               std::search(text.begin(), text.end(), asciiKey.begin(), asciiKey.end(),
                           [](char c, char wanted) { return lowerASCII(c) == wanted; }) != text.end();
    }
};

Text::Text(std::string_view locale) : m_state(std::make_unique<State>(locale)) {}
Text::~Text() = default;
Text::Text(Text&&) noexcept = default;
Text& Text::operator=(Text&&) noexcept = default;

const std::string& Text::locale() const {
    return m_state->name;
}

Text::Needle::Needle(std::unique_ptr<State> state) : m_state(std::move(state)) {}
Text::Needle::~Needle() = default;
Text::Needle::Needle(Needle&&) noexcept = default;
Text::Needle& Text::Needle::operator=(Needle&&) noexcept = default;

bool Text::Needle::isIn(std::string_view text) const {
    if (m_state->key.isEmpty())
        return false;
    // Folding leaves ASCII text ASCII, but for the Turkic I.
    if (!m_state->isTurkic && isASCII(text))
        return m_state->isInASCII(text);
    return foldKey(text, m_state->isTurkic).indexOf(m_state->key) >= 0;
}

Text::Needle Text::needle(std::string_view text) const {
    auto state = std::make_unique<Needle::State>();
    state->isTurkic = m_state->isTurkic;
    state->key = foldKey(text, m_state->isTurkic);
    std::string key;
    if (isASCII(state->key.toUTF8String(key)))
        state->asciiKey = std::move(key);
    return Needle(std::move(state));
}

bool Text::contains(std::string_view text, std::string_view part) const {
    return needle(part).isIn(text);
}

std::string Text::searchKey(std::string_view text) const {
    std::string key;
    if (m_state->isTurkic) // whose I is folded among ASCII too
        return foldKey(text, true).toUTF8String(key);
    key.reserve(text.size());
    // Piece by piece, since converting takes many times as long as looking. An ASCII character begins anew, but what
    // stands behind it may belong to it: a mark over it.
    while (!text.empty()) {
        const std::size_t ascii = lengthOfASCII(text);
        const std::size_t plain = ascii < text.size() && ascii > 0 ? ascii - 1 : ascii;
        appendLowerASCII(key, text.substr(0, plain));
        std::size_t end = ascii;
        while (end < text.size() && static_cast<unsigned char>(text[end]) >= 0x80)
            ++end;
        if (plain < end)
            foldKey(text.substr(plain, end - plain), false).toUTF8String(key);
        text.remove_prefix(end);
    }
    return key;
}

std::string Text::folded(std::string_view text) const {
    std::string result;
    return withoutAccents(foldKey(text, m_state->isTurkic)).toUTF8String(result);
}

bool Text::containsFolded(std::string_view text, std::string_view part) const {
    const std::string wanted = folded(part);
    return !wanted.empty() && folded(text).find(wanted) != std::string::npos;
}

int Text::compare(std::string_view a, std::string_view b) const {
    const int order = compareWith(*m_state->standard, a, b);
    return order != 0 ? order : a.compare(b);
}

int Text::compareIgnoringCase(std::string_view a, std::string_view b) const {
    return compareWith(*m_state->caseless, a, b);
}

} // namespace quillorn
