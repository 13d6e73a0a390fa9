#include "HTTP/HttpServer.h"

#include <utility>

namespace quillorn {

std::optional<HttpResponse> HttpServer::refusal(const HttpRequest& request) const {
    for (const auto& check : middleware)
        if (auto response = check(request))
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
