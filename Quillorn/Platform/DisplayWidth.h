#pragma once

#include <cstddef>
#include <cstdio>
#include <string>
#include <string_view>

namespace quillorn {

/// The cells that a terminal needs for the text, which has no control characters: 2 for most of East Asia and for
/// emoji, 0 for marks on other characters.
std::size_t displayWidth(std::string_view text);

/// The text, or a beginning of it and "…" where it needs more cells than `width`.
std::string fittedToWidth(std::string_view text, std::size_t width);

/// The cells of a line of the terminal that `stream` leads to; 80 where it doesn't say.
std::size_t terminalWidth(std::FILE* stream);

} // namespace quillorn
