#pragma once

#include "Platform/Json.h"

#include <functional>
#include <string>
#include <string_view>

namespace quillorn {

/// A title, name or path as standard output may show it: it comes from outside, and must not steer a terminal. What is
/// read by a program arrives as it is.
std::string shown(std::string_view text);

/// For --json.
void printJson(const Json& value);
/// The same for what is written piece by piece.
void printJson(const std::function<void(JsonWriter&)>& write);

/// Says on standard error what went wrong; the words may have several lines. Where that fails nothing is thrown: the
/// work goes on, and the program's status tells at its end.
void printError(std::string_view words);

} // namespace quillorn
