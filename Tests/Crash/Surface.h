#pragma once

#include "Crash/Ledger.h"

#include <memory>
#include <string>

namespace quillorn {

/// A wish to write, whatever way it goes.
struct WriteRequest {
    std::string verb; // create, update, delete, or what else the kind knows: complete, incomplete, stop
    std::string kind; // project, tag, task, note or time_entry
    std::string id;   // empty for create
    Json::Object fields;
};

/// A way to reach the server, used by one writer.
class Surface {
  public:
    struct Answer {
        enum class Kind { acknowledged, refused, cutOff } kind;
        /// Of the record that was made.
        std::string id{};
        /// What the server said.
        std::string text{};
        bool isOverMCP = false;
    };

    virtual ~Surface() = default;
    virtual Answer send(const WriteRequest& request) = 0;
};

/// Over the REST API, with a connection for each request, as its answers end with their connection.
std::unique_ptr<Surface> restSurface(std::uint16_t port);

/// Over the tools of the MCP server as it lists them; what no tool can say goes over the REST API.
std::unique_ptr<Surface> mcpSurface(std::uint16_t port);

/// All records by key, as the lists of the REST API show them. Entries of the timer, which have no name, are
/// "timer#0" and so on from the earliest.
ListedRecords listEverything(std::uint16_t port);

} // namespace quillorn
