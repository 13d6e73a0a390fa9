#include "Models/HexColor.h"

#include <algorithm>
#include <charconv>
#include <cstdint>

namespace quillorn {

namespace {

bool isASCII(char byte) {
    return static_cast<unsigned char>(byte) < 0x80;
}

/// Bytes beyond ASCII are kept too: no color has them, at its ends neither.
bool isAlphanumeric(char byte) {
    return (byte >= '0' && byte <= '9') || (byte >= 'a' && byte <= 'z') || (byte >= 'A' && byte <= 'Z') ||
           !isASCII(byte);
}

double channel(std::uint32_t value) {
    return static_cast<double>(value & 0xFFU) / 255.0;
}

} // namespace

HexColor HexColor::parse(std::string_view text) {
    while (!text.empty() && !isAlphanumeric(text.front()))
        text.remove_prefix(1);
    while (!text.empty() && !isAlphanumeric(text.back()))
        text.remove_suffix(1);
    if (!std::ranges::all_of(text, isASCII))
        return {};
    std::uint32_t number = 0;
    std::from_chars(text.data(), text.data() + text.size(), number, 16);
    switch (text.size()) {
    case 3: {
        const auto digit = [&](unsigned shift) { return channel((number >> shift & 0xFU) * 17); };
        return {digit(8), digit(4), digit(0), 1};
    }
    case 6:
        return {channel(number >> 16), channel(number >> 8), channel(number), 1};
    case 8:
        return {channel(number >> 16), channel(number >> 8), channel(number), channel(number >> 24)};
    default:
        return {};
    }
}

} // namespace quillorn
