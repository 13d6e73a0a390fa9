#pragma once

#include <array>
#include <compare>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace quillorn {

class RandomSource;

/// A 128-bit identifier. Its text form is the usual 8-4-4-4-12 hexadecimal one, in upper case.
class UUID {
  public:
    using Bytes = std::array<std::uint8_t, 16>;

    /// The nil identifier, for records that are about to be filled.
    constexpr UUID() = default;
    constexpr explicit UUID(const Bytes& bytes) : m_bytes(bytes) {}

    /// A new random identifier (version 4).
    static UUID random(RandomSource& random);
    /// Accepts digits of either case; absent for any other form.
    static std::optional<UUID> parse(std::string_view text);

    const Bytes& bytes() const { return m_bytes; }
    using Text = std::array<char, 36>;
    Text text() const;
    std::string string() const;

    friend constexpr auto operator<=>(const UUID&, const UUID&) = default;

  private:
    Bytes m_bytes{};
};

} // namespace quillorn

template <>
struct std::hash<quillorn::UUID> {
    std::size_t operator()(const quillorn::UUID& id) const noexcept;
};
