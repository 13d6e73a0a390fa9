#pragma once

#include "Platform/Json.h"

#include <optional>
#include <string_view>

namespace quillorn {

/// The object that a model was asked for, from an answer that may put it into a code fence or between sentences.
std::optional<Json> extractJsonObject(std::string_view answer);

} // namespace quillorn
