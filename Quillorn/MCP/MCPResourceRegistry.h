#pragma once

#include "MCP/MCPRecords.h"
#include "MCP/ResourceDocuments.h"

#include <stdexcept>
#include <string>

namespace quillorn {

/// Of resources and of answers.
inline constexpr const char* jsonType = "application/json";

/// Why a resource can't be read.
class MCPResourceError : public std::runtime_error {
  public:
    static MCPResourceError invalidURI(const std::string& uri) {
        return MCPResourceError("Invalid resource URI: " + uri);
    }
    static MCPResourceError notFound(const std::string& uri) { return MCPResourceError("Resource not found: " + uri); }

  private:
    using std::runtime_error::runtime_error;
};

/// Views of the store under quillorn://, for clients that read context rather than call tools. Each read works in a
/// store context of its own.
class MCPResourceRegistry {
  public:
    explicit MCPResourceRegistry(ResourceEnvironment environment);

    const MCPResourcesListResult& allResources() const { return m_resources; }
    const MCPResourceTemplatesListResult& allTemplates() const { return m_templates; }

    /// The JSON document of that URI. Throws MCPResourceError.
    std::string read(const std::string& uri) const;

  private:
    ResourceEnvironment m_environment;
    MCPResourcesListResult m_resources;
    MCPResourceTemplatesListResult m_templates;
};

} // namespace quillorn
