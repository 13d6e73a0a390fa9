#include "Models/Client.h"

#include "Models/ChatMessage.h"
#include "Models/Project.h"
#include "Store/EntityType.h"

namespace quillorn {

struct Client::Table {
    static constexpr std::array columns{
        column<&Client::m_name>("name"),
        column<&Client::m_clientDescription>("clientDescription"),
        column<&Client::m_color>("color"),
        column<&Client::m_icon>("icon"),
        column<&Client::m_createdAt>("createdAt"),
        column<&Client::m_updatedAt>("updatedAt"),
        column<&Client::m_isArchived>("isArchived"),
    };
    static constexpr std::array relations{
        toMany<&Client::m_projects>("projects", "client"),
        toMany<&Client::m_chatMessages>("chatMessages", "client"),
    };
    template <auto Member>
    static constexpr std::size_t at = placeOf<Member>(columns);
    template <auto Member>
    static constexpr std::size_t list = placeOf<Member>(relations);
    static std::unique_ptr<Entity> make() { return std::unique_ptr<Entity>(new Client); }
};

const EntityType& Client::entityType() {
    static const EntityType type = makeEntityType("Client", Table::columns, Table::relations, &Table::make);
    return type;
}

void Client::initialize(Arguments arguments, Date now) {
    m_name = std::move(arguments.name);
    m_clientDescription = std::move(arguments.clientDescription);
    m_color = std::move(arguments.color);
    m_icon = std::move(arguments.icon);
    m_createdAt = m_updatedAt = now;
}

void Client::setName(std::string name) {
    assign(Table::at<&Client::m_name>, m_name, std::move(name));
}
void Client::setClientDescription(std::optional<std::string> description) {
    assign(Table::at<&Client::m_clientDescription>, m_clientDescription, std::move(description));
}
void Client::setColor(std::string color) {
    assign(Table::at<&Client::m_color>, m_color, std::move(color));
}
void Client::setIcon(std::string icon) {
    assign(Table::at<&Client::m_icon>, m_icon, std::move(icon));
}
void Client::setUpdatedAt(Date date) {
    assign(Table::at<&Client::m_updatedAt>, m_updatedAt, date);
}
void Client::setArchived(bool archived) {
    assign(Table::at<&Client::m_isArchived>, m_isArchived, archived);
}

const List<Project>& Client::projects() const {
    load(Table::list<&Client::m_projects>, m_projects);
    return m_projects;
}

const List<ChatMessage>& Client::chatMessages() const {
    load(Table::list<&Client::m_chatMessages>, m_chatMessages);
    return m_chatMessages;
}

std::vector<Project*> Client::activeProjects() const {
    std::vector<Project*> active;
    for (Project* project : projects())
        if (!project->isArchived())
            active.push_back(project);
    return active;
}

} // namespace quillorn
