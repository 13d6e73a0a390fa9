#include "API/Routes.h"

#include "API/ClientController.h"
#include "API/NoteController.h"
#include "API/ProjectController.h"
#include "API/TagController.h"
#include "API/TaskController.h"
#include "API/TimeEntryController.h"
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

// Runs before the viewer, which would ask its vendor for fonts and offer services of the vendor's.
constexpr const char* viewerConfiguration =
    "document.getElementById('api-reference').dataset.configuration = JSON.stringify({\n"
    "    withDefaultFonts: false, telemetry: false, showDeveloperTools: 'never', hideClientButton: true,\n"
    "    agent: {disabled: true}, mcp: {disabled: true},\n"
    "});\n";

/// `operation` is a member function of the controller or of what it derives from.
template <class Controller, class Operation>
Route route(const char* method, const char* path, const std::shared_ptr<Controller>& controller, Operation operation) {
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

/// Read at each request, so that a file that is put in place later is served. `preface` goes in front of it.
HttpHandler resource(const Paths& paths, const char* name, const char* contentType, const char* preface = "") {
    return [=, &paths](const HttpRequest&) {
        auto bytes = readResource(paths, name);
        if (!bytes)
            return HttpResponse::notFound();
        return HttpResponse::raw(200, "OK", {{"Content-Type", contentType}}, writerOf(preface + std::move(*bytes)));
    };
}

HttpHandler methodNotAllowed(const char* error) {
    return [error](const HttpRequest&) {
        return HttpResponse::raw(405, "Method Not Allowed", {{"Content-Type", "application/json"}, {"Allow", "POST"}},
                                 writerOf(Json(Json::Object{{"error", error}}).text()));
    };
}

} // namespace

std::vector<Route> apiRoutes(ModelContainer& container, const Clock& clock, const Text& text, const Paths& paths,
                             ListCache& lists) {
    const auto clients = std::make_shared<ClientController>(container, clock, text, lists);
    const auto projects = std::make_shared<ProjectController>(container, clock, text, lists);
    const auto tasks = std::make_shared<TaskController>(container, clock, text, lists);
    const auto tags = std::make_shared<TagController>(container, clock, text, lists);
    const auto timeEntries = std::make_shared<TimeEntryController>(container, clock, text, lists);
    const auto notes = std::make_shared<NoteController>(container, clock, text, lists);
    const auto health = [&clock](const HttpRequest&) {
        return HttpResponse::ok(
            HttpResponseBody::json(Json::Object{{"status", "ok"}, {"timestamp", formatISO8601(clock.now())}}));
    };
    const auto documentation = [](const HttpRequest&) {
        return HttpResponse::ok(HttpResponseBody::htmlBody(documentationPage));
    };
    return {
        {"GET", "/api/health", health},
        route("GET", "/api/clients", clients, &ClientController::list),
        route("GET", "/api/clients/:id", clients, &ClientController::get),
        route("POST", "/api/clients", clients, &ClientController::create),
        route("PUT", "/api/clients/:id", clients, &ClientController::update),
        route("DELETE", "/api/clients/:id", clients, &ClientController::remove),
        route("GET", "/api/clients/:id/projects", clients, &ClientController::projects),
        route("GET", "/api/projects", projects, &ProjectController::list),
        route("GET", "/api/projects/:id", projects, &ProjectController::get),
        route("POST", "/api/projects", projects, &ProjectController::create),
        route("PUT", "/api/projects/:id", projects, &ProjectController::update),
        route("DELETE", "/api/projects/:id", projects, &ProjectController::remove),
        route("GET", "/api/projects/:id/tasks", projects, &ProjectController::tasks),
        route("GET", "/api/projects/:id/notes", projects, &ProjectController::notes),
        route("GET", "/api/projects/:id/time-entries", projects, &ProjectController::timeEntries),
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
        route("GET", "/api/tags", tags, &TagController::list),
        route("GET", "/api/tags/:id", tags, &TagController::get),
        route("POST", "/api/tags", tags, &TagController::create),
        route("PUT", "/api/tags/:id", tags, &TagController::update),
        route("DELETE", "/api/tags/:id", tags, &TagController::remove),
        route("GET", "/api/tags/:id/tasks", tags, &TagController::tasks),
        route("GET", "/api/time-entries", timeEntries, &TimeEntryController::list),
        route("GET", "/api/time-entries/:id", timeEntries, &TimeEntryController::get),
        route("POST", "/api/time-entries", timeEntries, &TimeEntryController::create),
        route("PUT", "/api/time-entries/:id", timeEntries, &TimeEntryController::update),
        route("DELETE", "/api/time-entries/:id", timeEntries, &TimeEntryController::remove),
        route("POST", "/api/time-entries/:id/stop", timeEntries, &TimeEntryController::stop),
        route("GET", "/api/notes", notes, &NoteController::list),
        route("GET", "/api/notes/:id", notes, &NoteController::get),
        route("POST", "/api/notes", notes, &NoteController::create),
        route("PUT", "/api/notes/:id", notes, &NoteController::update),
        route("DELETE", "/api/notes/:id", notes, &NoteController::remove),
        route("POST", "/api/notes/:id/pin", notes, &NoteController::pin),
        {"GET", "/openapi.json", resource(paths, "openapi.json", "application/json")},
        {"GET", "/docs", documentation},
        {"GET", "/docs/scalar.js",
         resource(paths, "scalar.standalone.min.js", "application/javascript", viewerConfiguration)},
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
