#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace quillorn {

/// What stands at the start of a text: one well-formed UTF-8 sequence, or the bytes that one U+FFFD stands for.
struct UTF8Sequence {
    std::size_t length;
    bool isValid;
};

inline constexpr std::string_view replacementCharacter = "\xEF\xBF\xBD"; // U+FFFD

/// `text` must not be empty. Overlong forms, surrogates and values above U+10FFFF are malformed.
UTF8Sequence firstUTF8Sequence(std::string_view text);
bool isASCII(std::string_view text);
/// The length of the longest well-formed start of `text`.
std::size_t validUTF8Length(std::string_view text);
/// Adds the character that has the byte's number.
inline void appendLatin1(std::string& text, char character) {
    const auto byte = static_cast<unsigned char>(character);
    if (byte < 0x80) {
        text += character;
    } else {
        text += static_cast<char>(0xC0 | byte >> 6);
        text += static_cast<char>(0x80 | (byte & 0x3F));
    }
}
/// `text` with a U+FFFD for each malformed part.
std::string repairedUTF8(std::string_view text);

} // namespace quillorn
