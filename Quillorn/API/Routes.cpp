#include "API/Routes.h"

#include "API/TaskController.h"
#include "Platform/Clock.h"
#include "Platform/Paths.h"

#include <fstream>
#include <memory>
#include <optional>
#include <sstream>
#include <utility>

namespace quillorn {

namespace {

constexpr const char* documentationPage =
    "<!doctype html><html><head><title>Quillorn API</title>"
    "<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\"></head><body>"
    "<script id=\"api-reference\" data-url=\"/openapi.json\"></script>"
    "<script src=\"/docs/scalar.js\"></script></body></html>";

template <class Controller>
Route route(const char* method, const char* path, const std::shared_ptr<Controller>& controller,
            HttpResponse (Controller::*operation)(const HttpRequest&) const) {
    return {method, path, [=](const HttpRequest& request) { return (*controller.*operation)(request); }};
}

HttpResponse::BodyWriter writerOf(std::string bytes) {
    return [bytes = std::make_shared<const std::string>(std::move(bytes))](HttpResponseBodyWriter& writer) {
        writer.write(*bytes);
    };
}

std::optional<std::string> readResource(const Paths& paths, const char* name) {
    try {
        std::ifstream file(paths.resources() / name, std::ios::binary);
        std::ostringstream bytes;
        if (file && bytes << file.rdbuf())
            return std::move(bytes).str();
    } catch (const std::exception&) {
        // No folder of resources, or one that can't be read: the file is missing.
    }
    return std::nullopt;
}

/// Read at each request, so that a file that is put in place later is served.
HttpHandler resource(const Paths& paths, const char* name, const char* contentType) {
    return [&paths, name, contentType](const HttpRequest&) {
        auto bytes = readResource(paths, name);
        if (!bytes)
            return HttpResponse::notFound();
        return HttpResponse::raw(200, "OK", {{"Content-Type", contentType}}, writerOf(std::move(*bytes)));
    };
}

HttpHandler methodNotAllowed(const char* error) {
    return [error](const HttpRequest&) {
        return HttpResponse::raw(405, "Method Not Allowed", {{"Content-Type", "application/json"}, {"Allow", "POST"}},
                                 writerOf(Json(Json::Object{{"error", error}}).text()));
    };
}

} // namespace

std::vector<Route> apiRoutes(ModelContainer& container, const Clock& clock, const Text& text, const Paths& paths) {
    const auto tasks = std::make_shared<TaskController>(container, clock, text);
    const auto health = [&clock](const HttpRequest&) {
        return HttpResponse::ok(
            HttpResponseBody::json(Json::Object{{"status", "ok"}, {"timestamp", formatISO8601(clock.now())}}));
    };
    const auto documentation = [](const HttpRequest&) {
        return HttpResponse::ok(HttpResponseBody::htmlBody(documentationPage));
    };
    return {
        {"GET", "/api/health", health},
        route("GET", "/api/tasks", tasks, &TaskController::list),
        route("GET", "/api/tasks/:id", tasks, &TaskController::get),
        route("POST", "/api/tasks", tasks, &TaskController::create),
        route("PUT", "/api/tasks/:id", tasks, &TaskController::update),
        route("DELETE", "/api/tasks/:id", tasks, &TaskController::remove),
        route("POST", "/api/tasks/:id/complete", tasks, &TaskController::complete),
        route("POST", "/api/tasks/:id/incomplete", tasks, &TaskController::incomplete),
        route("GET", "/api/tasks/:id/time-entries", tasks, &TaskController::timeEntries),
        route("POST", "/api/tasks/:id/tags", tasks, &TaskController::addTags),
        route("DELETE", "/api/tasks/:id/tags/:tagId", tasks, &TaskController::removeTag),
        {"GET", "/openapi.json", resource(paths, "openapi.json", "application/json")},
        {"GET", "/docs", documentation},
        {"GET", "/docs/scalar.js", resource(paths, "scalar.standalone.min.js", "application/javascript")},
    };
}

std::vector<Route> mcpRoutes(HttpHandler post) {
    return {
        {"POST", "/mcp", std::move(post)},
        {"GET", "/mcp", methodNotAllowed("SSE streaming not supported")},
        {"DELETE", "/mcp", methodNotAllowed("Session termination not supported")},
    };
}

} // namespace quillorn
