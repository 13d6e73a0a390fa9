#include "API/Guards.h"

#include "Platform/URLParts.h"
#include "Platform/UTF8.h"

#include <string_view>

namespace quillorn {

namespace {

const std::string* headerOf(const HttpRequest& request, const std::string& name) {
    const auto found = request.headers.find(name);
    return found == request.headers.end() ? nullptr : &found->second;
}

bool isThisMachine(std::string_view host) {
    return host == "localhost" || host == "127.0.0.1" || host == "::1";
}

/// The name in a Host header, without the port and the brackets of an IPv6 address.
std::string hostName(std::string header) {
    for (char& c : header)
        if (c >= 'A' && c <= 'Z')
            c = static_cast<char>(c - 'A' + 'a');
    return header.starts_with('[') ? header.substr(1, header.find(']') - 1) : header.substr(0, header.find(':'));
}

bool isOwnOrigin(const std::string& origin) {
    const auto parts = parseURL(origin);
    return parts && parts->host && isThisMachine(*parts->host);
}

HttpResponse refusal(int status, const char* reason, HttpResponse::Headers headers, const char* message) {
    headers.emplace("Content-Type", "application/json");
    Json::Object body{{"error", reason}, {"message", message}};
    return HttpResponse::raw(
        status, reason, std::move(headers),
        [text = Json(std::move(body)).text()](HttpResponseBodyWriter& writer) { writer.write(text); });
}

} // namespace

Guard hostGuard() {
    return [](const HttpRequest& request) -> std::optional<HttpResponse> {
        const std::string* host = headerOf(request, "host");
        if (host != nullptr && !isThisMachine(hostName(*host)))
            return refusal(403, "Forbidden", {}, "Invalid Host header");
        const std::string* origin = headerOf(request, "origin");
        if (origin != nullptr && !isOwnOrigin(*origin))
            return refusal(403, "Forbidden", {}, "Cross-origin requests are not allowed");
        return std::nullopt;
    };
}

Guard bearerGuard(const std::string& key) {
    // The values of headers are the bytes of the client as Latin-1; those of the key are UTF-8.
    std::string header = "Bearer ";
    for (const char byte : key)
        appendLatin1(header, byte);
    return [expected = std::move(header)](const HttpRequest& request) -> std::optional<HttpResponse> {
        const std::string& path = request.path;
        // The router takes a method with slashes for the first part of the path: that would lead elsewhere.
        const bool isPlain = request.method.find('/') == std::string::npos;
        if (isPlain &&
            (path == "/api/health" || path == "/openapi.json" || path == "/docs" || path.starts_with("/docs/")))
            return std::nullopt;
        const std::string* authorization = headerOf(request, "authorization");
        if (authorization != nullptr && *authorization == expected)
            return std::nullopt;
        return refusal(401, "Unauthorized", {{"WWW-Authenticate", "Bearer"}}, "Valid Bearer token required");
    };
}

} // namespace quillorn
