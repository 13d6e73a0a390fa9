#include "Models/ChatMessage.h"

#include "Models/Client.h"
#include "Models/Project.h"
#include "Store/EntityType.h"

namespace quillorn {

struct ChatMessage::Table {
    static constexpr std::array columns{
        column<&ChatMessage::m_role>("role"),
        column<&ChatMessage::m_content>("content"),
        column<&ChatMessage::m_createdAt>("createdAt"),
        toOne<&ChatMessage::m_project>("project", OnDelete::cascade),
        toOne<&ChatMessage::m_client>("client", OnDelete::cascade),
    };
    template <auto Member>
    static constexpr std::size_t at = placeOf<Member>(columns);
    static std::unique_ptr<Entity> make() { return std::unique_ptr<Entity>(new ChatMessage); }
};

const EntityType& ChatMessage::entityType() {
    static const EntityType type = makeEntityType("ChatMessage", Table::columns, {}, &Table::make);
    return type;
}

void ChatMessage::initialize(Arguments arguments, Date now) {
    m_role = arguments.role;
    m_content = std::move(arguments.content);
    m_createdAt = now;
    setProject(arguments.project);
    setClient(arguments.client);
}

void ChatMessage::setContent(std::string content) {
    assign(Table::at<&ChatMessage::m_content>, m_content, std::move(content));
}

Project* ChatMessage::project() const {
    return static_cast<Project*>(resolve(Table::at<&ChatMessage::m_project>, m_project));
}
void ChatMessage::setProject(Project* project) {
    assignReference(Table::at<&ChatMessage::m_project>, m_project, project);
}
Client* ChatMessage::client() const {
    return static_cast<Client*>(resolve(Table::at<&ChatMessage::m_client>, m_client));
}
void ChatMessage::setClient(Client* client) {
    assignReference(Table::at<&ChatMessage::m_client>, m_client, client);
}

} // namespace quillorn
