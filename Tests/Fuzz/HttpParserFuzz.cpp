#include "HTTP/HttpErrors.h"
#include "HTTP/HttpParser.h"
#include "HTTP/HttpRouter.h"
#include "HTTP/Socket.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <sys/socket.h>

using namespace quillorn;

namespace {

HttpRouter& router() {
    static HttpRouter routes;
    static const bool ready = [] {
        for (const auto* path : {"/a", "/a/:x", "/a/:x/b", "/*/c", "/**/d"})
            routes.registerRoute("GET", path, [](const HttpRequest&) { return HttpResponse::notFound(); });
        return true;
    }();
    (void)ready;
    return routes;
}

} // namespace

/// Whatever a client sends, reading it ends in requests and one of the two errors, and every request can be routed.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    int ends[2];
    if (::socketpair(AF_UNIX, SOCK_STREAM, 0, ends) != 0)
        return 0;
    Socket socket(ends[0]);
    {
        Socket client(ends[1]);
        // Small enough for the socket's buffer, since nobody reads yet.
        client.writeBytes({reinterpret_cast<const char*>(data), std::min<std::size_t>(size, 64 * 1024)});
    }
    try {
        for (;;) {
            const HttpRequest request = HttpParser().readHttpRequest(socket);
            supportsKeepAlive(request.headers);
            router().route(request.method, request.path);
        }
    } catch (const SocketError&) {
    } catch (const HttpParserError&) {
    }
    return 0;
}
