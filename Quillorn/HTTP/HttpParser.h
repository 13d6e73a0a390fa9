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
    /// malformed request and SocketError when the connection ends or fails first; so do its two halves.
    HttpRequest readHttpRequest(Socket& socket) const;

    /// All of it but the body, which follows in the socket.
    HttpRequest readHead(Socket& socket) const;
    void readBody(Socket& socket, HttpRequest& request) const;
};

/// Whether more than the head belongs to the request, be it of a length that the parser reads or in another form.
bool promisesBody(const HttpRequest& head);

/// Whether the client asked to keep the connection. Only the exact value "keep-alive" does, whatever the version of
/// the request.
bool supportsKeepAlive(const std::map<std::string, std::string>& headers);

} // namespace quillorn
