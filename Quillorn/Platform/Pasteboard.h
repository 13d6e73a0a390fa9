#pragma once

#include <string>

namespace quillorn {

/// Puts a text where other programs paste it from. Throws std::runtime_error with words for the user where there is no
/// display, or none of the programs that can do it.
void copyToPasteboard(const std::string& text);

} // namespace quillorn
