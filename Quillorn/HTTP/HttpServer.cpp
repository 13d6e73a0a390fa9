#include "HTTP/HttpServer.h"

#include <utility>

namespace quillorn {

HttpRouter::Match HttpServer::dispatch(const HttpRequest& request) const {
    for (const auto& check : middleware) {
        if (auto response = check(request))
            return {{}, [response = std::move(*response)](const HttpRequest&) { return response; }};
    }
    if (auto match = router.route(request.method, request.path))
        return std::move(*match);
    if (notFoundHandler)
        return {{}, notFoundHandler};
    return HttpServerIO::dispatch(request);
}

} // namespace quillorn
