#pragma once

#include "Store/Entity.h"

#include <optional>
#include <string>
#include <vector>

namespace quillorn {

class ChatMessage;
class Project;

/// The colour that clients, projects and tags have before anybody chooses one.
inline constexpr const char* defaultColor = "#007AFF";

/// Somebody for whom projects are done.
class Client final : public Entity {
  public:
    struct Arguments {
        std::string name{};
        std::optional<std::string> clientDescription{};
        std::string color = defaultColor;
        std::string icon = "building.2.fill";
    };

    static const EntityType& entityType();

    const std::string& name() const { return m_name; }
    void setName(std::string name);
    const std::optional<std::string>& clientDescription() const { return m_clientDescription; }
    void setClientDescription(std::optional<std::string> description);
    const std::string& color() const { return m_color; }
    void setColor(std::string color);
    const std::string& icon() const { return m_icon; }
    void setIcon(std::string icon);
    Date createdAt() const { return m_createdAt; }
    Date updatedAt() const { return m_updatedAt; }
    void setUpdatedAt(Date date);
    bool isArchived() const { return m_isArchived; }
    void setArchived(bool archived);

    const List<Project>& projects() const;
    const List<ChatMessage>& chatMessages() const;

    std::vector<Project*> activeProjects() const;
    std::size_t activeProjectCount() const { return activeProjects().size(); }

  private:
    friend class ModelContext;
    struct Table;

    Client() = default;
    void initialize(Arguments arguments, Date now);

    std::string m_name;
    std::optional<std::string> m_clientDescription;
    std::string m_color = defaultColor;
    std::string m_icon = "building.2.fill";
    Date m_createdAt{};
    Date m_updatedAt{};
    bool m_isArchived = false;
    List<Project> m_projects;
    List<ChatMessage> m_chatMessages;
};

} // namespace quillorn
