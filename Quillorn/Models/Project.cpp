#include "Models/Project.h"

#include "Models/ChatMessage.h"
#include "Models/Note.h"
#include "Models/ProjectTask.h"
#include "Models/TimeEntry.h"
#include "Store/EntityType.h"

#include <unordered_set>

namespace quillorn {

struct Project::Table {
    static constexpr std::array columns{
        column<&Project::m_name>("name"),
        column<&Project::m_projectDescription>("projectDescription"),
        column<&Project::m_color>("color"),
        column<&Project::m_createdAt>("createdAt"),
        column<&Project::m_updatedAt>("updatedAt"),
        column<&Project::m_isArchived>("isArchived"),
        column<&Project::m_sortOrder>("sortOrder"),
        column<&Project::m_groupID>("groupID"),
        toOne<&Project::m_client>("client", OnDelete::cascade),
    };
    static constexpr std::array relations{
        toMany<&Project::m_tasks>("tasks", "project"),
        toMany<&Project::m_notes>("notes", "project"),
        toMany<&Project::m_directTimeEntries>("directTimeEntries", "project"),
        toMany<&Project::m_chatMessages>("chatMessages", "project"),
    };
    template <auto Member>
    static constexpr std::size_t at = placeOf<Member>(columns);
    template <auto Member>
    static constexpr std::size_t list = placeOf<Member>(relations);
    static std::unique_ptr<Entity> make() { return std::unique_ptr<Entity>(new Project); }
};

const EntityType& Project::entityType() {
    static const EntityType type = makeEntityType("Project", Table::columns, Table::relations, &Table::make);
    return type;
}

void Project::initialize(Arguments arguments, Date now) {
    m_name = std::move(arguments.name);
    m_projectDescription = std::move(arguments.projectDescription);
    m_color = std::move(arguments.color);
    m_createdAt = m_updatedAt = now;
}

void Project::setName(std::string name) {
    assign(Table::at<&Project::m_name>, m_name, std::move(name));
}
void Project::setProjectDescription(std::optional<std::string> description) {
    assign(Table::at<&Project::m_projectDescription>, m_projectDescription, std::move(description));
}
void Project::setColor(std::string color) {
    assign(Table::at<&Project::m_color>, m_color, std::move(color));
}
void Project::setUpdatedAt(Date date) {
    assign(Table::at<&Project::m_updatedAt>, m_updatedAt, date);
}
void Project::setArchived(bool archived) {
    assign(Table::at<&Project::m_isArchived>, m_isArchived, archived);
}
void Project::setSortOrder(std::int64_t order) {
    assign(Table::at<&Project::m_sortOrder>, m_sortOrder, order);
}
void Project::setGroupID(std::optional<UUID> group) {
    assign(Table::at<&Project::m_groupID>, m_groupID, group);
}

Client* Project::client() const {
    return static_cast<Client*>(resolve(Table::at<&Project::m_client>, m_client));
}
void Project::setClient(Client* client) {
    assignReference(Table::at<&Project::m_client>, m_client, client);
}

const List<ProjectTask>& Project::tasks() const {
    load(Table::list<&Project::m_tasks>, m_tasks);
    return m_tasks;
}

const List<Note>& Project::notes() const {
    load(Table::list<&Project::m_notes>, m_notes);
    return m_notes;
}

const List<TimeEntry>& Project::directTimeEntries() const {
    load(Table::list<&Project::m_directTimeEntries>, m_directTimeEntries);
    return m_directTimeEntries;
}

const List<ChatMessage>& Project::chatMessages() const {
    load(Table::list<&Project::m_chatMessages>, m_chatMessages);
    return m_chatMessages;
}

bool Project::isHidden() const {
    if (m_isArchived)
        return true;
    const Client* owner = client();
    return owner != nullptr && owner->isArchived();
}

std::vector<TimeEntry*> Project::allTimeEntries() const {
    std::vector<TimeEntry*> entries;
    std::unordered_set<UUID> seen;
    const auto add = [&](TimeEntry* entry) {
        if (seen.insert(entry->id()).second)
            entries.push_back(entry);
    };
    for (const ProjectTask* task : tasks())
        for (TimeEntry* entry : task->timeEntries())
            add(entry);
    for (TimeEntry* entry : directTimeEntries())
        add(entry);
    return entries;
}

} // namespace quillorn
