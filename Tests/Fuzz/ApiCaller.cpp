#include "Fuzz/ApiCaller.h"

#include "API/OpenApiDocument.h"
#include "Fuzz/Harness.h"
#include "Support/Answers.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

namespace quillorn {

ApiCaller::ApiCaller(ModelContainer& container) : m_lists(container) {
    for (const Route& route : apiRoutes(container, m_clock, m_text, m_paths, m_lists))
        m_router.registerRoute(route.method, route.path, [this, route](const HttpRequest& request) {
            m_route = route;
            return route.handler(request);
        });
}

std::optional<int> ApiCaller::call(const std::string& method, std::string target, const std::string& body) {
    HttpRequest request;
    request.method = method;
    request.body = body;
    if (const auto mark = target.find('?'); mark != std::string::npos) {
        for (std::size_t at = mark; at < target.size(); at = std::min(target.find('&', at + 1), target.size())) {
            const std::string pair = target.substr(at + 1, target.find('&', at + 1) - at - 1);
            const auto sign = std::min(pair.find('='), pair.size());
            request.queryParams.emplace_back(pair.substr(0, sign), pair.substr(std::min(sign + 1, pair.size())));
        }
        target.resize(mark);
    }
    request.path = target;
    const auto match = m_router.route(method, target);
    if (!match)
        return std::nullopt;
    request.params = match->params;
    const HttpResponse response = match->handler(request);
    const int status = response.statusCode();
    const std::string answer = bodyOf(response);
    // By the route: to the router "GET/api /tags" is a method and a path of it, too.
    const auto faults = OpenApiDocument::shared().faultsOfAnswer(m_route.method, m_route.path, status, answer);
    require(faults.empty() && status < 500,
            fmt::format("{} {}: {} {}\n{}", method, target, status, fmt::join(faults, "; "), answer.substr(0, 2000)));
    return status;
}

} // namespace quillorn
