#include "Platform/Crypto.h"

#include <openssl/sha.h>

namespace quillorn {

std::array<std::uint8_t, 32> sha256(std::string_view text) {
    std::array<std::uint8_t, 32> digest{};
    ::SHA256(reinterpret_cast<const unsigned char*>(text.data()), text.size(), digest.data());
    return digest;
}

std::string hexString(std::span<const std::uint8_t> bytes) {
    constexpr std::string_view digits = "0123456789abcdef";
    std::string text;
    text.reserve(bytes.size() * 2);
    for (const std::uint8_t byte : bytes) {
        text += digits[byte >> 4];
        text += digits[byte & 0x0F];
    }
    return text;
}

} // namespace quillorn
