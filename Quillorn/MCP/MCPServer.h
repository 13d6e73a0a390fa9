#pragma once

#include "HTTP/HttpResponse.h"
#include "MCP/JSONRPC.h"
#include "MCP/MCPResourceRegistry.h"
#include "MCP/MCPToolRegistry.h"

#include <mutex>
#include <set>
#include <string>

namespace quillorn {

class RandomSource;

/// What the server needs of the outside world. Referred to, not owned.
struct MCPEnvironment {
    ModelContainer& container;
    const Clock& clock;
    const Text& text;
    const Calendar& calendar;
    RandomSource& random;
};

/// The Model Context Protocol: JSON-RPC 2.0 over HTTP POST, one request in one body. Safe to call from many threads at
/// once.
class MCPServer {
  public:
    explicit MCPServer(const MCPEnvironment& environment);

    /// Answers the body of a POST. Faults of the protocol are answered with status 200, too.
    HttpResponse handle(const std::string& body);

  private:
    struct Reply {
        AnyEncodable result;
        HttpResponse::Headers headers{};
    };

    Reply dispatch(const JSONRPCRequest& request);
    Reply initialize();
    MCPToolResult callTool(const Json::Object& params) const;
    MCPResourceReadResult readResource(const Json::Object& params) const;
    std::string makeSession();

    RandomSource& m_random;
    MCPToolRegistry m_tools;
    MCPResourceRegistry m_resources;
    std::mutex m_mutex;
    /// Handed out and never asked for again: a client without one is served all the same.
    std::set<std::string> m_sessions;
};

} // namespace quillorn
