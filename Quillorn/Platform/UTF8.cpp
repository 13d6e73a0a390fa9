#include "Platform/UTF8.h"

#include "Platform/Text.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

namespace quillorn {

namespace {

/// How a lead byte goes on; the second byte has a range of its own, which keeps out overlong forms and surrogates.
struct Lead {
    std::size_t length = 0; // 0: can't begin a sequence
    std::uint8_t lowest = 0x80;
    std::uint8_t highest = 0xBF;
};

constexpr Lead leadOf(std::uint8_t byte) {
    if (byte < 0x80)
        return {1};
    if (byte < 0xC2 || byte > 0xF4)
        return {};
    if (byte < 0xE0)
        return {2};
    if (byte < 0xF0)
        return {3, std::uint8_t(byte == 0xE0 ? 0xA0 : 0x80), std::uint8_t(byte == 0xED ? 0x9F : 0xBF)};
    return {4, std::uint8_t(byte == 0xF0 ? 0x90 : 0x80), std::uint8_t(byte == 0xF4 ? 0x8F : 0xBF)};
}

bool startsWithEightASCII(const char* bytes) {
    std::uint64_t word = 0;
    std::memcpy(&word, bytes, sizeof word);
    return (word & 0x8080808080808080u) == 0;
}

} // namespace

UTF8Sequence firstUTF8Sequence(std::string_view text) {
    Lead lead = leadOf(static_cast<std::uint8_t>(text[0]));
    if (lead.length == 0)
        return {1, false};
    for (std::size_t i = 1; i < lead.length; ++i) {
        if (i == text.size())
            return {i, false};
        const auto byte = static_cast<std::uint8_t>(text[i]);
        if (byte < lead.lowest || byte > lead.highest)
            return {i, false};
        lead.lowest = 0x80;
        lead.highest = 0xBF;
    }
    return {lead.length, true};
}

bool isASCII(std::string_view text) {
    for (; text.size() >= 8; text.remove_prefix(8))
        // NOLINTNEXTLINE(bugprone-suspicious-stringview-data-usage): there are eight
        if (!startsWithEightASCII(text.data()))
            return false;
    return std::all_of(text.begin(), text.end(), [](char c) { return static_cast<std::uint8_t>(c) < 0x80; });
}

std::size_t validUTF8Length(std::string_view text) {
    std::size_t at = 0;
    while (at < text.size()) {
        if (text.size() - at >= 8 && startsWithEightASCII(text.data() + at)) {
            at += 8;
            continue;
        }
        if (static_cast<std::uint8_t>(text[at]) < 0x80) {
            ++at;
            continue;
        }
        const UTF8Sequence sequence = firstUTF8Sequence(text.substr(at));
        if (!sequence.isValid)
            return at;
        at += sequence.length;
    }
    return at;
}

std::string repairedUTF8(std::string_view text) {
    std::string repaired;
    repaired.reserve(text.size());
    while (!text.empty()) {
        const std::size_t valid = validUTF8Length(text);
        repaired += text.substr(0, valid);
        text.remove_prefix(valid);
        if (!text.empty()) {
            repaired += replacementCharacter;
            text.remove_prefix(firstUTF8Sequence(text).length);
        }
    }
    return repaired;
}

bool isValidUTF8(std::string_view text) {
    return validUTF8Length(text) == text.size();
}

} // namespace quillorn
