#include "Models/HexColor.h"

#include "Platform/Text.h"

#include <charconv>
#include <cstdint>

namespace quillorn {

namespace {

/// Letters of other scripts count too: they are digits to nobody, so it matters for the length only.
bool isAlphanumeric(char byte) {
    return (byte >= '0' && byte <= '9') || (byte >= 'a' && byte <= 'z') || (byte >= 'A' && byte <= 'Z') ||
           static_cast<unsigned char>(byte) >= 0x80;
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
    std::uint32_t number = 0;
    std::from_chars(text.data(), text.data() + text.size(), number, 16);
    switch (characterCount(text)) {
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
