#include "AI/JsonExtraction.h"

namespace quillorn {

namespace {

constexpr std::string_view fence = "```";

/// What stands in the first code fence, else everything.
std::string_view insideFence(std::string_view answer) {
    const std::size_t opening = answer.find(fence);
    if (opening == std::string_view::npos)
        return answer;
    const std::string_view inside = answer.substr(opening + fence.size());
    const std::size_t closing = inside.find(fence);
    return closing == std::string_view::npos ? answer : inside.substr(0, closing);
}

} // namespace

std::optional<Json> extractJsonObject(std::string_view answer) {
    const std::string_view text = insideFence(answer);
    const std::size_t first = text.find('{');
    const std::size_t last = text.rfind('}');
    if (first == std::string_view::npos || last == std::string_view::npos || last < first)
        return std::nullopt;
    try {
        return Json::parse(text.substr(first, last - first + 1)); // from brace to brace it can be nothing but an object
    } catch (const JsonError&) {
        return std::nullopt;
    }
}

} // namespace quillorn
