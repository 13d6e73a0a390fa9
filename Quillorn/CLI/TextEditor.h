#pragma once

#include <string>
#include <string_view>

namespace quillorn {

/// Lets the user change a text in the program that $VISUAL or else $EDITOR names, and waits for its end. Throws
/// std::runtime_error where there is none or it fails, and where what it leaves is no text.
std::string editedText(const std::string& text);

/// Keeps a text that could not be stored in a file of its own; the words say where.
std::string wordsForKept(std::string_view text);

} // namespace quillorn
