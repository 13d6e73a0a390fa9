#pragma once

#include "HTTP/HttpRouter.h"
#include "HTTP/HttpServerIO.h"

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace quillorn {

/// Registers handlers of one method: `server.GET["/api/tasks/:id"] = handler`.
class MethodRoute {
  public:
    class Registration {
      public:
        Registration(HttpRouter& router, const std::optional<std::string>& method, std::string path)
            : m_router(router),
              m_method(method),
              m_path(std::move(path)) {}
        // NOLINTNEXTLINE(misc-unconventional-assign-operator): the registration is over, there is nothing to go on with
        void operator=(HttpHandler handler) && { m_router.registerRoute(m_method, m_path, std::move(handler)); }

      private:
        HttpRouter& m_router;
        const std::optional<std::string>& m_method;
        std::string m_path;
    };

    /// An absent method stands for all.
    MethodRoute(HttpRouter& router, std::optional<std::string> method)
        : m_router(router),
          m_method(std::move(method)) {}

    Registration operator[](std::string path) const { return {m_router, m_method, std::move(path)}; }

  private:
    HttpRouter& m_router;
    std::optional<std::string> m_method;
};

/// The connection loop with a route table. Routes, middleware and notFoundHandler are set up before start(), and only
/// read from then on.
class HttpServer : public HttpServerIO {
  public:
    using HttpServerIO::HttpServerIO;
    ~HttpServer() override { finish(); }

    HttpRouter router;

    MethodRoute DELETE{router, "DELETE"};
    MethodRoute PATCH{router, "PATCH"};
    MethodRoute HEAD{router, "HEAD"};
    MethodRoute POST{router, "POST"};
    MethodRoute GET{router, "GET"};
    MethodRoute PUT{router, "PUT"};
    // The same once more; the small twin of DELETE would be a keyword.
    MethodRoute patch = PATCH;
    MethodRoute head = HEAD;
    MethodRoute post = POST;
    MethodRoute get = GET;
    MethodRoute put = PUT;

    /// Registers for every method.
    MethodRoute::Registration operator[](std::string path) { return m_anyMethod[std::move(path)]; }

    /// Answers what no route matches; empty for a bare 404.
    HttpHandler notFoundHandler;
    /// Run in order when the head of a request is there; the first response ends the request, unread as it is.
    std::vector<std::function<std::optional<HttpResponse>(const HttpRequest&)>> middleware;

    std::optional<HttpResponse> refusal(const HttpRequest& request) const override;
    HttpRouter::Match dispatch(const HttpRequest& request) const override;

  private:
    MethodRoute m_anyMethod{router, std::nullopt};
};

} // namespace quillorn
