#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace quillorn {

/// The two parts of a URL that decisions hang on, in lower case.
struct URLParts {
    std::optional<std::string> scheme{};
    /// Without user, port and the brackets of an IPv6 address; absent where the URL names no authority.
    std::optional<std::string> host{};
};

/// Absent for what is no URL or relative reference by RFC 3986. Characters beyond ASCII pass, as people paste them.
std::optional<URLParts> parseURL(std::string_view text);

} // namespace quillorn
