#pragma once

#include <cstdio>
#include <string>
#include <string_view>

namespace quillorn {

/// What becomes of the line feeds of a text.
enum class LineEnds { escaped, kept };

/// `text` with all that a terminal would obey instead of showing it (C0, DEL and C1 controls) as "\u001B" and the
/// like, and a U+FFFD for each malformed part. JSON stays JSON, and says the same.
std::string escapeControls(std::string_view text, LineEnds lineEnds = LineEnds::escaped);

bool isTerminal(std::FILE* stream);

/// What to write of `text` to `stream`: escaped where that leads to a terminal, else as it is.
std::string textFor(std::FILE* stream, std::string_view text, LineEnds lineEnds = LineEnds::escaped);

} // namespace quillorn
