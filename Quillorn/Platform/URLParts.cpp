#include "Platform/URLParts.h"

#include <algorithm>

namespace quillorn {

namespace {

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

bool isLetter(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

bool isHexDigit(char c) {
    return isDigit(c) || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F');
}

bool mayStandInURL(char c) {
    return static_cast<unsigned char>(c) >= 0x80 || isLetter(c) || isDigit(c) ||
           std::string_view("-._~:/?#[]@!$&'()*+,;=%").find(c) != std::string_view::npos;
}

bool hasURLCharacters(std::string_view text) {
    if (!std::all_of(text.begin(), text.end(), mayStandInURL))
        return false;
    for (auto at = text.find('%'); at != std::string_view::npos; at = text.find('%', at + 1))
        if (text.size() < at + 3 || !isHexDigit(text[at + 1]) || !isHexDigit(text[at + 2]))
            return false;
    return true;
}

std::string lowercased(std::string_view text) {
    std::string result(text);
    for (char& c : result)
        if (c >= 'A' && c <= 'Z')
            c = static_cast<char>(c - 'A' + 'a');
    return result;
}

/// Takes the scheme and its colon from the front of `text`.
std::optional<std::string> takeScheme(std::string_view& text) {
    const auto mayGoOn = [](char c) { return isLetter(c) || isDigit(c) || c == '+' || c == '-' || c == '.'; };
    const auto end = static_cast<std::size_t>(std::find_if_not(text.begin(), text.end(), mayGoOn) - text.begin());
    if (end == text.size() || text[end] != ':' || !isLetter(text[0]))
        return std::nullopt;
    auto scheme = lowercased(text.substr(0, end));
    text.remove_prefix(end + 1);
    return scheme;
}

/// The host of "user@host:port"; absent where the authority is malformed.
std::optional<std::string> hostOf(std::string_view authority) {
    if (const auto at = authority.rfind('@'); at != std::string_view::npos)
        authority.remove_prefix(at + 1);
    std::string_view host = authority;
    if (authority.starts_with('[')) {
        const auto end = authority.find(']');
        if (end == std::string_view::npos)
            return std::nullopt;
        host = authority.substr(1, end - 1);
        authority.remove_prefix(end + 1);
    } else {
        host = authority.substr(0, authority.find(':'));
        authority.remove_prefix(host.size());
    }
    if (host.find_first_of("[]@") != std::string_view::npos)
        return std::nullopt;
    if (!authority.empty() && (authority[0] != ':' || !std::all_of(authority.begin() + 1, authority.end(), isDigit)))
        return std::nullopt;
    return lowercased(host);
}

} // namespace

std::optional<URLParts> parseURL(std::string_view text) {
    if (text.empty() || !hasURLCharacters(text))
        return std::nullopt;
    URLParts parts;
    parts.scheme = takeScheme(text);
    if (!parts.scheme && text.starts_with(':'))
        return std::nullopt;
    if (!text.starts_with("//"))
        return parts;
    text.remove_prefix(2);
    parts.host = hostOf(text.substr(0, text.find_first_of("/?#")));
    if (!parts.host)
        return std::nullopt;
    return parts;
}

} // namespace quillorn
