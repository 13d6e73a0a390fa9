#pragma once

#include "MCP/MCPRecords.h"
#include "Records/Tool.h"

#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace quillorn {

/// The catalogue of tools, and the tools themselves. Each call works in a store context of its own, so calls may come
/// from many threads at once.
class MCPToolRegistry {
  public:
    explicit MCPToolRegistry(ToolEnvironment environment);

    /// In the order of the catalogue.
    const MCPToolsListResult& allTools() const { return m_definitions; }

    /// Faults of the client's are results with `isError`; what else goes wrong is thrown. In both cases the store is as
    /// it was.
    MCPToolResult call(const std::string& name, const Json::Object& arguments) const;

  private:
    using Run = decltype(Tool::run);

    ToolEnvironment m_environment;
    MCPToolsListResult m_definitions;
    std::map<std::string, Run, std::less<>> m_tools;
};

} // namespace quillorn
