#pragma once

#include "Platform/Json.h"

#include <algorithm>
#include <string_view>

namespace quillorn {

/// The array of that member; null pointer where there is none or where it holds anything but objects.
inline const Json::Array* objectsIn(const Json& value, std::string_view key) {
    const Json* member = value.find(key);
    const Json::Array* array = member != nullptr ? member->asArray() : nullptr;
    const bool isOfObjects =
        array != nullptr && std::ranges::all_of(*array, [](const Json& each) { return each.asObject() != nullptr; });
    return isOfObjects ? array : nullptr;
}

} // namespace quillorn
