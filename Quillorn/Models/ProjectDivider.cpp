#include "Models/ProjectDivider.h"

#include "Store/EntityType.h"

namespace quillorn {

struct ProjectDivider::Table {
    static constexpr std::array columns{
        column<&ProjectDivider::m_title>("title"),
        column<&ProjectDivider::m_sortOrder>("sortOrder"),
        column<&ProjectDivider::m_createdAt>("createdAt"),
        column<&ProjectDivider::m_clientID>("clientID"),
    };
    template <auto Member>
    static constexpr std::size_t at = placeOf<Member>(columns);
    static std::unique_ptr<Entity> make() { return std::unique_ptr<Entity>(new ProjectDivider); }
};

const EntityType& ProjectDivider::entityType() {
    static const EntityType type = makeEntityType("ProjectDivider", Table::columns, {}, &Table::make);
    return type;
}

void ProjectDivider::initialize(Arguments arguments, Date now) {
    m_title = std::move(arguments.title);
    m_clientID = arguments.clientID;
    m_sortOrder = arguments.sortOrder;
    m_createdAt = now;
}

void ProjectDivider::setTitle(std::string title) {
    assign(Table::at<&ProjectDivider::m_title>, m_title, std::move(title));
}
void ProjectDivider::setSortOrder(std::int64_t order) {
    assign(Table::at<&ProjectDivider::m_sortOrder>, m_sortOrder, order);
}
void ProjectDivider::setClientID(std::optional<UUID> client) {
    assign(Table::at<&ProjectDivider::m_clientID>, m_clientID, client);
}

} // namespace quillorn
