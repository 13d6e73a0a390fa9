#pragma once

#include "HTTP/HttpRequest.h"

#include <map>
#include <string>

namespace quillorn {

class Socket;

/// Reads the small part of HTTP/1.1 that the server speaks: one request at a time, a body only by Content-Length.
class HttpParser {
  public:
    /// Blocks until a whole request has arrived. Leaves `address` and `params` empty. Throws HttpParserError for a
    /// malformed request and SocketError when the connection ends or fails first.
    HttpRequest readHttpRequest(Socket& socket) const;
};

/// Whether the client asked to keep the connection. Only the exact value "keep-alive" does, whatever the version of
/// the request.
bool supportsKeepAlive(const std::map<std::string, std::string>& headers);

} // namespace quillorn
