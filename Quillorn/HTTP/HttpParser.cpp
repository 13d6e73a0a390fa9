#include "HTTP/HttpParser.h"

#include "HTTP/HttpErrors.h"
#include "HTTP/Socket.h"
#include "Platform/Text.h"

#include <charconv>
#include <cstdint>
#include <optional>
#include <string_view>

namespace quillorn {

namespace {

using Kind = HttpParserError::Kind;

/// Up to the first `separator`, or all of `text`; `text` loses that and the separator.
std::string_view takeUntil(std::string_view& text, char separator) {
    const auto end = text.find(separator);
    const auto piece = text.substr(0, end);
    text = end == std::string_view::npos ? std::string_view{} : text.substr(end + 1);
    return piece;
}

void readRequestLine(HttpRequest& request, const std::string& line) {
    const auto firstBlank = line.find(' ');
    const auto secondBlank = firstBlank == std::string::npos ? firstBlank : line.find(' ', firstBlank + 1);
    if (secondBlank == std::string::npos)
        throw HttpParserError(Kind::invalidStatusLine, line);
    request.method = line.substr(0, firstBlank);

    // The target is percent-encoded as a whole, escapes of the client included, and its pieces are decoded once: that
    // leaves every piece as it was sent, so neither is done.
    auto query = std::string_view(line).substr(firstBlank + 1, secondBlank - firstBlank - 1);
    request.path = takeUntil(query, '?');
    for (bool more = !query.empty(); more;) {
        more = query.find('&') != std::string_view::npos;
        auto value = takeUntil(query, '&');
        const auto name = takeUntil(value, '=');
        request.queryParams.emplace_back(name, value);
    }
}

/// Lines hold Latin-1 characters as UTF-8, so these two ranges are all the capitals there are.
std::string lowercased(std::string_view text) {
    std::string result(text);
    bool inLatin1 = false;
    for (char& character : result) {
        const auto byte = static_cast<unsigned char>(character);
        const bool capital =
            inLatin1 ? byte >= 0x80 && byte <= 0x9E && byte != 0x97 : character >= 'A' && character <= 'Z';
        if (capital)
            character = static_cast<char>(byte + 0x20);
        inLatin1 = byte == 0xC3;
    }
    return result;
}

std::string_view trimBlanksAndTabs(std::string_view text) {
    const auto begin = text.find_first_not_of(" \t");
    if (begin == std::string_view::npos)
        return {};
    return text.substr(begin, text.find_last_not_of(" \t") - begin + 1);
}

/// A line without a colon, or with nothing behind it, has its name for a value.
void readHeader(HttpRequest& request, std::string_view line) {
    const auto begin = line.find_first_not_of(':');
    if (begin == std::string_view::npos)
        return;
    line.remove_prefix(begin);
    const auto name = takeUntil(line, ':');
    request.headers.insert_or_assign(lowercased(name), trimBlanksAndTabs(line.empty() ? name : line));
}

/// Optional sign and digits; absent for anything else and for what 64 bits can't hold.
std::optional<std::int64_t> decimal(std::string_view text) {
    if (text.size() > 1 && text[0] == '+' && text[1] != '-')
        text.remove_prefix(1);
    std::int64_t value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc{} || end != text.data() + text.size())
        return std::nullopt;
    return value;
}

std::int64_t contentLength(const HttpRequest& head) {
    const auto header = head.headers.find("content-length");
    return header == head.headers.end() ? 0 : decimal(header->second).value_or(0);
}

} // namespace

HttpRequest HttpParser::readHttpRequest(Socket& socket) const {
    HttpRequest request = readHead(socket);
    readBody(socket, request);
    return request;
}

HttpRequest HttpParser::readHead(Socket& socket) const {
    HttpRequest request;
    readRequestLine(request, socket.readLine());
    for (std::string line = socket.readLine(); !line.empty(); line = socket.readLine())
        readHeader(request, line);
    if (contentLength(request) < 0)
        throw HttpParserError(Kind::negativeContentLength);
    return request;
}

void HttpParser::readBody(Socket& socket, HttpRequest& request) const {
    request.body = socket.readBytes(contentLength(request));
}

bool promisesBody(const HttpRequest& head) {
    return contentLength(head) > 0 || head.headers.contains("transfer-encoding");
}

bool supportsKeepAlive(const std::map<std::string, std::string>& headers) {
    const auto connection = headers.find("connection");
    return connection != headers.end() && trimWhitespaceAndNewlines(connection->second) == "keep-alive";
}

} // namespace quillorn
