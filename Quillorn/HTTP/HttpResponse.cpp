#include "HTTP/HttpResponse.h"

#include <utility>

namespace quillorn {

HttpResponse::HttpResponse(int statusCode, std::string reasonPhrase, Headers headers)
    : m_statusCode(statusCode),
      m_reasonPhrase(std::move(reasonPhrase)),
      m_headers(std::move(headers)) {}

HttpResponse HttpResponse::switchProtocols(Headers headers) {
    return {101, "Switching Protocols", std::move(headers)};
}

HttpResponse HttpResponse::ok(HttpResponseBody body, Headers headers) {
    HttpResponse response(200, "OK", std::move(headers));
    if (body.contentType())
        response.m_headers.emplace("Content-Type", *body.contentType());
    response.m_body = std::move(body);
    return response;
}

HttpResponse HttpResponse::created() {
    return {201, "Created"};
}

HttpResponse HttpResponse::accepted() {
    return {202, "Accepted"};
}

HttpResponse HttpResponse::movedPermanently(std::string location) {
    return {301, "Moved Permanently", {{"Location", std::move(location)}}};
}

HttpResponse HttpResponse::movedTemporarily(std::string location) {
    return {307, "Moved Temporarily", {{"Location", std::move(location)}}};
}

HttpResponse HttpResponse::badRequest(std::optional<HttpResponseBody> body) {
    HttpResponse response(400, "Bad Request");
    response.m_body = std::move(body);
    return response;
}

HttpResponse HttpResponse::unauthorized() {
    return {401, "Unauthorized"};
}

HttpResponse HttpResponse::forbidden() {
    return {403, "Forbidden"};
}

HttpResponse HttpResponse::notFound() {
    return {404, "Not Found"};
}

HttpResponse HttpResponse::notAcceptable() {
    return {406, "Not Acceptable"};
}

HttpResponse HttpResponse::tooManyRequests() {
    return {429, "Too Many Requests"};
}

HttpResponse HttpResponse::internalServerError() {
    return {500, "Internal Server Error"};
}

HttpResponse HttpResponse::raw(int status, std::string reason, Headers headers, BodyWriter write) {
    HttpResponse response(status, std::move(reason), std::move(headers));
    response.m_write = std::move(write);
    return response;
}

HttpResponse::Headers HttpResponse::responseHeaders(std::string_view version) const {
    Headers headers = m_headers;
    headers.try_emplace("Server", std::string("Tidewire ").append(version));
    return headers;
}

HttpResponse::Content HttpResponse::content() const {
    if (!m_body)
        return {-1, m_write};
    auto bytes = m_body->bytes();
    const auto length = static_cast<std::int64_t>(bytes->size());
    return {length, [bytes = std::move(bytes)](HttpResponseBodyWriter& writer) { writer.write(*bytes); }};
}

} // namespace quillorn
