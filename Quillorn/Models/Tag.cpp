#include "Models/Tag.h"

#include "Models/ProjectTask.h"
#include "Store/EntityType.h"

namespace quillorn {

struct Tag::Table {
    static constexpr std::array columns{
        column<&Tag::m_name>("name"),
        column<&Tag::m_color>("color"),
        column<&Tag::m_createdAt>("createdAt"),
        column<&Tag::m_updatedAt>("updatedAt"),
    };
    static constexpr std::array relations{
        manyToMany<&Tag::m_tasks>("tasks", "tags", "ProjectTask_Tag", "tag", "task"),
    };
    template <auto Member>
    static constexpr std::size_t at = placeOf<Member>(columns);
    template <auto Member>
    static constexpr std::size_t list = placeOf<Member>(relations);
    static std::unique_ptr<Entity> make() { return std::unique_ptr<Entity>(new Tag); }
};

const EntityType& Tag::entityType() {
    static const EntityType type = makeEntityType("Tag", Table::columns, Table::relations, &Table::make);
    return type;
}

void Tag::initialize(Arguments arguments, Date now) {
    m_name = std::move(arguments.name);
    m_color = std::move(arguments.color);
    m_createdAt = m_updatedAt = now;
}

void Tag::setName(std::string name) {
    assign(Table::at<&Tag::m_name>, m_name, std::move(name));
}
void Tag::setColor(std::string color) {
    assign(Table::at<&Tag::m_color>, m_color, std::move(color));
}
void Tag::setUpdatedAt(Date date) {
    assign(Table::at<&Tag::m_updatedAt>, m_updatedAt, date);
}

const List<ProjectTask>& Tag::tasks() const {
    load(Table::list<&Tag::m_tasks>, m_tasks);
    return m_tasks;
}

} // namespace quillorn
