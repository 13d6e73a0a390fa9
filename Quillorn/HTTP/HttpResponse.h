#pragma once

#include "HTTP/HttpResponseBody.h"
#include "HTTP/HttpResponseBodyWriter.h"

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace quillorn {

/// An answer. One with a body from `ok` or `badRequest` says its length and can keep the connection; every other one is
/// ended by the closing of the connection.
class HttpResponse {
  public:
    using Headers = std::map<std::string, std::string>;
    /// Runs on the connection's worker while the response is sent.
    using BodyWriter = std::function<void(HttpResponseBodyWriter&)>;

    struct Content {
        /// Bytes, or -1 where the end of the connection ends the body.
        std::int64_t length = -1;
        /// Empty where there is no body.
        BodyWriter write;
    };

    static HttpResponse switchProtocols(Headers headers);
    /// `headers` are added to those that the body brings.
    static HttpResponse ok(HttpResponseBody body, Headers headers = {});
    static HttpResponse created();
    static HttpResponse accepted();
    static HttpResponse movedPermanently(std::string location);
    static HttpResponse movedTemporarily(std::string location);
    static HttpResponse badRequest(std::optional<HttpResponseBody> body = {});
    static HttpResponse unauthorized();
    static HttpResponse forbidden();
    static HttpResponse notFound();
    static HttpResponse notAcceptable();
    static HttpResponse tooManyRequests();
    static HttpResponse internalServerError();
    /// Headers given here stand over those that the server adds. `reason` and `headers` must hold no line ends.
    static HttpResponse raw(int status, std::string reason, Headers headers = {}, BodyWriter write = {});

    int statusCode() const { return m_statusCode; }
    const std::string& reasonPhrase() const { return m_reasonPhrase; }
    /// With the `Server` header, which names the program and `version`.
    Headers responseHeaders(std::string_view version) const;
    /// Serialises the body, so that its length is known.
    Content content() const;

  private:
    HttpResponse(int statusCode, std::string reasonPhrase, Headers headers = {});

    int m_statusCode;
    std::string m_reasonPhrase;
    Headers m_headers;
    std::optional<HttpResponseBody> m_body;
    BodyWriter m_write;
};

} // namespace quillorn
