#pragma once

#include "Platform/Json.h"

#include <filesystem>

namespace quillorn {

/// A property list, binary or XML, as a JSON object: data as base64, dates as ISO 8601. Values that JSON has no form
/// for are left out. Throws std::runtime_error for a file that can't be read, is larger than 16 MB or holds no
/// dictionary.
Json::Object readPropertyList(const std::filesystem::path& file);

} // namespace quillorn
