#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace quillorn {

/// "; did you mean "status"?" for a word that is nearly one of `known`, else nothing: to end a message with.
std::string suggestion(std::string_view word, const std::vector<std::string>& known);

} // namespace quillorn
