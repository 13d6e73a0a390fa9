#include "Records/Validation.h"

#include "Platform/Text.h"
#include "Platform/URLParts.h"

#include <string_view>
#include <utility>

namespace quillorn {

namespace {

constexpr std::size_t maximumSourceTitleLength = 200;
constexpr std::size_t maximumSourceURLLength = 2048;

/// In user-perceived characters, none of which is shorter than a byte.
bool isLongerThan(const std::string& text, std::size_t limit) {
    return text.size() > limit && characterCount(text) > limit;
}

bool isHexColor(std::string_view text) {
    constexpr std::string_view digits = "0123456789ABCDEFabcdef";
    return text.size() == 7 && text.front() == '#' && text.find_first_not_of(digits, 1) == std::string_view::npos;
}

bool isUnsafeScheme(const std::string& scheme) {
    return scheme == "file" || scheme == "javascript" || scheme == "data";
}

} // namespace

void Validation::require(bool holds, std::string message) {
    if (!holds)
        m_faults.push_back(std::move(message));
}

void Validation::requireText(const std::optional<std::string>& value, const char* field) {
    require(!value || !trimBlanks(*value).empty(), std::string(field) + " cannot be empty");
}

void Validation::requireZeroToThree(const std::optional<std::int64_t>& value, const char* field) {
    require(!value || (*value >= 0 && *value <= 3), std::string(field) + " must be 0-3");
}

void Validation::requireHash(const std::optional<std::string>& color) {
    require(!color || color->starts_with('#'), "color must be a hex string starting with #");
}

void Validation::requireHexColor(const std::optional<std::string>& color) {
    require(!color || isHexColor(*color), "color must be a valid hex color (e.g. #FF3B30)");
}

void Validation::requireSource(const std::optional<std::string>& title, const std::optional<std::string>& url) {
    require(!title || !isLongerThan(*title, maximumSourceTitleLength), "sourceTitle must be at most 200 characters");
    if (!url || url->empty())
        return;
    if (isLongerThan(*url, maximumSourceURLLength))
        return require(false, "sourceURL must be at most 2048 characters");
    const auto parts = parseURL(*url);
    if (!parts || !parts->scheme)
        return require(false, "sourceURL must be an absolute URL");
    require(!isUnsafeScheme(*parts->scheme), "sourceURL scheme '" + *parts->scheme + "' is not allowed");
}

} // namespace quillorn
