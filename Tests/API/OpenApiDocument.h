#pragma once

#include "Platform/Json.h"

#include <string>
#include <vector>

namespace quillorn {

/// openapi.json, as far as tests compare the server with it.
class OpenApiDocument {
  public:
    static const OpenApiDocument& shared();

    const Json& root() const { return m_root; }
    /// "GET /api/tasks/:id" and so on, sorted.
    std::vector<std::string> operations() const;
    /// What the answer to a request has that the document doesn't tell, or lacks of what it tells; the path is one that
    /// a client calls.
    std::vector<std::string> faultsOfAnswer(const std::string& method, const std::string& path, int status,
                                            const std::string& body) const;
    /// Knows the keywords that the document uses. Members that the schema doesn't name are faults.
    std::vector<std::string> faultsOf(const Json& value, const Json& schema, const std::string& place = "") const;
    const Json& schema(const std::string& name) const;
    /// `node`, or what it refers to.
    const Json& resolve(const Json& node) const;

  private:
    OpenApiDocument();
    const Json* operation(const std::string& method, const std::string& path) const;

    Json m_root;
};

} // namespace quillorn
