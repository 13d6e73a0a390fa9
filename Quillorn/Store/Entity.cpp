#include "Store/Entity.h"

#include "Store/EntityType.h"
#include "Store/ModelContext.h"

#include <algorithm>

namespace quillorn {

void Entity::markChanged(std::size_t column) {
    if (m_changed == 0)
        m_context->noteChanged(*this);
    m_changed |= std::uint32_t{1} << column;
}

Entity* Entity::resolve(std::size_t column, const ReferenceBase& reference) const {
    if (!reference.m_resolved)
        m_context->loadReferences(*m_type, column);
    return reference.m_object;
}

void Entity::load(std::size_t relation, const ListBase& list) const {
    if (list.m_state == ListBase::State::notLoaded)
        m_context->loadList(*m_type, relation);
}

void Entity::assignReference(std::size_t column, ReferenceBase& reference, Entity* target) {
    Entity* const former = resolve(column, reference);
    if (former == target)
        return;
    markChanged(column);
    reference.m_object = target;
    reference.m_key = 0; // the object tells its key, which a new one gets only when it is saved
    const ToMany* inverse = m_type->inverseOf(column);
    if (inverse == nullptr)
        return;
    if (former != nullptr)
        std::erase(inverse->list(*former).m_items, this);
    if (target == nullptr)
        return;
    ListBase& list = inverse->list(*target);
    if (list.m_state == ListBase::State::notLoaded)
        return; // the loader will take this object in
    list.m_state = ListBase::State::loaded;
    list.m_items.push_back(this);
}

void Entity::assignLinks(std::size_t relation, const std::vector<Entity*>& targets) {
    const ToMany& links = m_type->relations[relation];
    ListBase& list = links.list(*this);
    load(relation, list);
    std::vector<Entity*> wanted;
    for (Entity* target : targets)
        if (target != nullptr && std::find(wanted.begin(), wanted.end(), target) == wanted.end())
            wanted.push_back(target);

    const EntityType& targetType = links.target();
    const ToMany& mirror = targetType.relations[targetType.relationNamed(links.inverse)];
    const auto contains = [](const std::vector<Entity*>& items, const Entity* item) {
        return std::find(items.begin(), items.end(), item) != items.end();
    };
    for (Entity* former : list.m_items) {
        if (contains(wanted, former))
            continue;
        m_context->noteLink(links, *this, *former, false);
        std::erase(mirror.list(*former).m_items, this);
    }
    for (Entity* target : wanted) {
        if (contains(list.m_items, target))
            continue;
        m_context->noteLink(links, *this, *target, true);
        ListBase& other = mirror.list(*target);
        if (other.m_state == ListBase::State::notLoaded)
            continue;
        other.m_state = ListBase::State::loaded;
        other.m_items.push_back(this);
    }
    list.m_items = std::move(wanted);
    list.m_state = ListBase::State::loaded;
}

} // namespace quillorn
