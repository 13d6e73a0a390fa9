#pragma once

#include "HTTP/HttpRouter.h"

#include <string>
#include <vector>

namespace quillorn {

class Clock;
class ListCache;
class ModelContainer;
class Paths;
class Text;

struct Route {
    std::string method;
    std::string path;
    HttpHandler handler;
};

/// Everything that the server answers, in the order of registration. What is given by reference must outlive the
/// handlers.
std::vector<Route> apiRoutes(ModelContainer& container, const Clock& clock, const Text& text, const Paths& paths,
                             ListCache& lists);
/// The routes of /mcp around the handler of its POST.
std::vector<Route> mcpRoutes(HttpHandler post);

} // namespace quillorn
