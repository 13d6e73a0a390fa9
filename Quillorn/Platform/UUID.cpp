#include "Platform/UUID.h"

#include "Platform/Crypto.h"

#include <cstring>

namespace quillorn {

namespace {

constexpr std::string_view digits = "0123456789ABCDEF";

constexpr bool hyphenStandsBefore(std::size_t byte) {
    return byte == 4 || byte == 6 || byte == 8 || byte == 10;
}

/// The value of a hexadecimal digit, or -1.
constexpr int digitValue(char c) {
    if (c >= '0' && c <= '9')
        return c - '0';
    if (c >= 'a' && c <= 'f')
        return c - 'a' + 10;
    if (c >= 'A' && c <= 'F')
        return c - 'A' + 10;
    return -1;
}

} // namespace

UUID UUID::random(RandomSource& random) {
    Bytes bytes;
    random.fill(bytes);
    // RFC 9562: the version in the high half of byte 6, the variant in the two high bits of byte 8.
    bytes[6] = static_cast<std::uint8_t>((bytes[6] & 0x0F) | 0x40);
    bytes[8] = static_cast<std::uint8_t>((bytes[8] & 0x3F) | 0x80);
    return UUID(bytes);
}

std::optional<UUID> UUID::parse(std::string_view text) {
    if (text.size() != std::tuple_size_v<Text>)
        return std::nullopt;
    Bytes bytes;
    std::size_t at = 0;
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        if (hyphenStandsBefore(i) && text[at++] != '-')
            return std::nullopt;
        const int high = digitValue(text[at++]);
        const int low = digitValue(text[at++]);
        if (high < 0 || low < 0)
            return std::nullopt;
        bytes[i] = static_cast<std::uint8_t>(high * 16 + low);
    }
    return UUID(bytes);
}

UUID::Text UUID::text() const {
    Text text;
    text.fill('-');
    std::size_t at = 0;
    for (std::size_t i = 0; i < m_bytes.size(); ++i) {
        if (hyphenStandsBefore(i))
            ++at;
        text[at++] = digits[m_bytes[i] >> 4];
        text[at++] = digits[m_bytes[i] & 0x0F];
    }
    return text;
}

std::string UUID::string() const {
    const Text characters = text();
    return {characters.data(), characters.size()};
}

} // namespace quillorn

std::size_t std::hash<quillorn::UUID>::operator()(const quillorn::UUID& id) const noexcept {
    std::uint64_t high = 0;
    std::uint64_t low = 0;
    std::memcpy(&high, id.bytes().data(), sizeof high);
    std::memcpy(&low, id.bytes().data() + sizeof high, sizeof low);
    // The odd factor keeps identifiers with equal halves apart.
    return static_cast<std::size_t>(high ^ (low * 0x9E3779B97F4A7C15u));
}
