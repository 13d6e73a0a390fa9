#pragma once

#include <algorithm>
#include <charconv>
#include <cstddef>
#include <optional>
#include <string_view>

namespace quillorn {

/// Steps through a text, piece by piece. What does not stand there is not taken. Case is ignored where it is ASCII.
class PhraseReader {
  public:
    explicit PhraseReader(std::string_view text) : m_text(text) {}

    std::size_t position() const { return m_position; }
    std::string_view rest() const { return m_text.substr(m_position); }

    void skip(std::size_t length) { m_position += std::min(length, rest().size()); }

    /// `piece` in lower case.
    bool take(std::string_view piece) {
        const auto same = [](char wanted, char found) {
            return wanted == (found >= 'A' && found <= 'Z' ? static_cast<char>(found + ('a' - 'A')) : found);
        };
        if (!std::ranges::equal(piece, rest().substr(0, piece.size()), same))
            return false;
        m_position += piece.size();
        return true;
    }

    /// Blanks and tabs; how many there were.
    std::size_t takeBlanks() {
        return takeWhile([](char c) { return c == ' ' || c == '\t'; });
    }

    /// A run of `shortest` to `longest` digits, of which the value must fit.
    std::optional<int> takeDigits(std::size_t shortest, std::size_t longest) {
        PhraseReader ahead = *this;
        const std::size_t length = ahead.takeWhile([](char c) { return c >= '0' && c <= '9'; });
        int value = 0;
        if (length < shortest || length > longest ||
            std::from_chars(rest().data(), rest().data() + length, value).ec != std::errc{})
            return std::nullopt;
        m_position = ahead.m_position;
        return value;
    }

    /// A whole number of any length, leading zeros included, up to `largest`.
    std::optional<int> takeNumber(int largest) {
        PhraseReader ahead = *this;
        const std::optional<int> value = ahead.takeDigits(1, m_text.size());
        if (!value || *value > largest)
            return std::nullopt;
        m_position = ahead.m_position;
        return value;
    }

  private:
    template <typename Test>
    std::size_t takeWhile(Test test) {
        const std::string_view left = rest();
        const auto length = static_cast<std::size_t>(std::ranges::find_if_not(left, test) - left.begin());
        m_position += length;
        return length;
    }

    std::string_view m_text;
    std::size_t m_position = 0;
};

} // namespace quillorn
