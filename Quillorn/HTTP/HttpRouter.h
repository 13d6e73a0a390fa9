#pragma once

#include "HTTP/HttpRequest.h"
#include "HTTP/HttpResponse.h"

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace quillorn {

/// Answers one request. Runs on the connection's worker, together with others.
using HttpHandler = std::function<HttpResponse(const HttpRequest&)>;

/// A tree of path segments: literal text, a variable (":id"), "*" for any one segment, "**" for a run of segments.
///
/// Routes are registered before the server starts. From then on the tree is only read, so lookups on many threads need
/// no lock.
class HttpRouter {
  public:
    using Params = std::map<std::string, std::string>;

    struct Match {
        Params params;
        HttpHandler handler;
    };

    HttpRouter();
    ~HttpRouter();
    HttpRouter(const HttpRouter&) = delete;
    HttpRouter& operator=(const HttpRouter&) = delete;

    /// An absent method stands for all. Replaces an earlier handler of the same route. A parent must not have two
    /// variables of different names.
    void registerRoute(const std::optional<std::string>& method, std::string_view path, HttpHandler handler);
    /// At each segment variables go before literal text, that before "*" and that before "**"; the first route found
    /// wins. Parameters of branches that led nowhere stay in the result.
    std::optional<Match> route(const std::optional<std::string>& method, std::string_view path) const;

  private:
    struct Node;
    class Search;

    std::unique_ptr<Node> m_rootNode;
};

} // namespace quillorn
