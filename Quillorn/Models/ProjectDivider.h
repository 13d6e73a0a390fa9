#pragma once

#include "Store/Entity.h"

#include <cstdint>
#include <optional>
#include <string>

namespace quillorn {

/// A named group of projects in one scope. It has no relations: projects name it by value, and so does it its client.
class ProjectDivider final : public Entity {
  public:
    struct Arguments {
        std::string title{};
        std::optional<UUID> clientID{};
        std::int64_t sortOrder = 0;
    };

    static const EntityType& entityType();

    const std::string& title() const { return m_title; }
    void setTitle(std::string title);
    std::int64_t sortOrder() const { return m_sortOrder; }
    void setSortOrder(std::int64_t order);
    Date createdAt() const { return m_createdAt; }
    /// The scope; absent for the projects without a client.
    const std::optional<UUID>& clientID() const { return m_clientID; }
    void setClientID(std::optional<UUID> client);

  private:
    friend class ModelContext;
    struct Table;

    ProjectDivider() = default;
    void initialize(Arguments arguments, Date now);

    std::string m_title;
    std::int64_t m_sortOrder = 0;
    Date m_createdAt{};
    std::optional<UUID> m_clientID;
};

} // namespace quillorn
