#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace quillorn {

/// A source of unpredictable bytes. Safe to share between threads.
class RandomSource {
  public:
    virtual ~RandomSource() = default;
    virtual void fill(std::span<std::uint8_t> bytes) = 0;
};

/// The operating system's generator. Throws std::system_error where the system has none to give.
class SystemRandom final : public RandomSource {
  public:
    void fill(std::span<std::uint8_t> bytes) override;
};

/// The SHA-256 of the bytes of `text`.
std::array<std::uint8_t, 32> sha256(std::string_view text);

/// Two lower-case hexadecimal digits for each byte.
std::string hexString(std::span<const std::uint8_t> bytes);

} // namespace quillorn
