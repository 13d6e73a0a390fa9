#pragma once

#include <string>

namespace quillorn {

/// What a file holds, or standard input for "-", without the line end after it. A terminal is asked for one line, with
/// `prompt` and without showing what is typed. Throws std::runtime_error.
std::string readValue(const std::string& file, const std::string& prompt);

/// Overwrites the keys among the arguments of this process, since everybody on the machine can read those.
void hideKeys(int count, char** arguments);

} // namespace quillorn
