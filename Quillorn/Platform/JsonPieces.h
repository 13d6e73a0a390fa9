#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace quillorn {

// Large JSON texts, of which only a piece at a time is to stand in memory as a value. The pieces are found by their
// brackets and strings alone; whether they are JSON tells whoever parses them. All throw JsonError with the place.

struct JsonMember {
    std::string key;
    std::string_view value;
};
/// The members of the object that the text is.
std::vector<JsonMember> jsonMembers(std::string_view text);

/// Calls for each element of the array that the text is.
void forEachJsonElement(std::string_view text, const std::function<void(std::string_view element)>& handle);

} // namespace quillorn
