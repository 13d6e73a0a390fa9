#include "HTTP/HttpServer.h"

#include <utility>

namespace quillorn {

std::optional<HttpResponse> HttpServer::refusal(const HttpRequest& head) const {
    for (const auto& check : middleware)
        if (auto response = check(head))
            return response;
    return std::nullopt;
}

HttpRouter::Match HttpServer::dispatch(const HttpRequest& request) const {
    if (auto match = router.route(request.method, request.path))
        return std::move(*match);
    if (notFoundHandler)
        return {{}, notFoundHandler};
    return HttpServerIO::dispatch(request);
}

} // namespace quillorn
