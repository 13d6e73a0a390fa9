#pragma once

#include "Models/Enums.h"
#include "Store/Entity.h"

#include <string>

namespace quillorn {

class Client;
class Project;

/// One message of the conversation about a project or a client.
class ChatMessage final : public Entity {
  public:
    struct Arguments {
        ChatRole role = ChatRole::user;
        std::string content{};
        Project* project = nullptr;
        Client* client = nullptr;
    };

    static const EntityType& entityType();

    ChatRole role() const { return m_role; }
    const std::string& content() const { return m_content; }
    void setContent(std::string content);
    Date createdAt() const { return m_createdAt; }

    Project* project() const;
    void setProject(Project* project);
    Client* client() const;
    void setClient(Client* client);

  private:
    friend class ModelContext;
    struct Table;

    ChatMessage() = default;
    void initialize(Arguments arguments, Date now);

    ChatRole m_role = ChatRole::user;
    std::string m_content;
    Date m_createdAt{};
    Reference<Project> m_project;
    Reference<Client> m_client;
};

} // namespace quillorn
