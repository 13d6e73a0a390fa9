#include "Store/RelationLoader.h"

#include "Store/KeyCondition.h"

#include <algorithm>
#include <fmt/core.h>
#include <utility>

namespace quillorn {

namespace {

/// The store's order; what is not stored yet comes last.
void sortByKey(std::vector<Entity*>& objects) {
    const auto rank = [](const Entity* object) { return static_cast<std::uint64_t>(object->key()) - 1; };
    const auto before = [&](const Entity* a, const Entity* b) { return rank(a) < rank(b); };
    if (!std::is_sorted(objects.begin(), objects.end(), before))
        std::stable_sort(objects.begin(), objects.end(), before);
}

std::vector<RowKey> keysOf(const std::vector<Entity*>& objects) {
    std::vector<RowKey> keys;
    keys.reserve(objects.size());
    for (const Entity* object : objects)
        keys.push_back(object->key());
    return keys;
}

} // namespace

Entity* RelationLoader::objectOf(const EntityType& type, RowKey key) {
    Entity* const* found = m_context.registryOf(type).byKey.find(key);
    return found == nullptr ? nullptr : *found;
}

void RelationLoader::fetchMissing(const EntityType& type, const std::vector<RowKey>& keys) {
    KeyMap<bool> seen;
    std::vector<RowKey> missing;
    for (const RowKey key : keys)
        if (!std::exchange(seen[key], true) && objectOf(type, key) == nullptr)
            missing.push_back(key);
    if (missing.empty())
        return;
    const KeyCondition condition(missing);
    m_context.fetchInto(type, {.where = std::string("key") + condition.sql(), .values = condition.values()},
                        [](Entity&) {});
}

void RelationLoader::loadReferences(const EntityType& type, std::size_t column) {
    const Column& description = type.columns[column];
    const EntityType& target = description.target();
    Objects objects;
    std::vector<RowKey> keys;
    for (const auto& object : m_context.registryOf(type).objects) {
        const ReferenceBase& reference = description.reference(*object);
        if (reference.m_resolved)
            continue;
        objects.push_back(object.get());
        keys.push_back(reference.m_key);
    }
    fetchMissing(target, keys);
    for (Entity* object : objects) {
        ReferenceBase& reference = description.reference(*object);
        Entity* const found = objectOf(target, reference.m_key);
        reference.m_object = found != nullptr && !found->isDeleted() ? found : nullptr;
        reference.m_resolved = true;
    }
}

RelationLoader::Objects RelationLoader::objectsWithoutList(const EntityType& type, const ToMany& relation) {
    Objects owners;
    for (const auto& object : m_context.registryOf(type).objects)
        if (relation.list(*object).m_state == ListBase::State::notLoaded)
            owners.push_back(object.get());
    return owners;
}

void RelationLoader::loadList(const EntityType& type, std::size_t relation) {
    const ToMany& description = type.relations[relation];
    const Objects owners = objectsWithoutList(type, description);
    for (Entity* owner : owners)
        description.list(*owner).m_state = ListBase::State::loading;
    try {
        if (description.overLinks())
            loadLinks(type, description, owners);
        else
            loadChildren(description, owners);
    } catch (...) {
        for (Entity* owner : owners) {
            description.list(*owner).m_items.clear();
            description.list(*owner).m_state = ListBase::State::notLoaded;
        }
        throw;
    }
    for (Entity* owner : owners)
        description.list(*owner).m_state = ListBase::State::loaded;
}

void RelationLoader::loadChildren(const ToMany& relation, const Objects& owners) {
    const EntityType& target = relation.target();
    const std::size_t column = target.columnNamed(relation.inverse);
    const KeyCondition condition(keysOf(owners));
    m_context.fetchInto(
        target, {.where = fmt::format("\"{}\"{}", relation.inverse, condition.sql()), .values = condition.values()},
        [](Entity&) {});
    // References of the targets show the rows as they are changed in this context, saved or not: so the lists are made
    // of them, and not of the rows just read.
    loadReferences(target, column);
    for (const auto& child : m_context.registryOf(target).objects) {
        if (child->isDeleted())
            continue;
        Entity* const owner = target.columns[column].reference(*child).m_object;
        if (ListBase* list = listBeingLoaded(relation, owner))
            list->m_items.push_back(child.get());
    }
    for (Entity* owner : owners)
        sortByKey(relation.list(*owner).m_items);
}

void RelationLoader::loadLinks(const EntityType& type, const ToMany& relation, const Objects& owners) {
    const Links links = readLinks(relation, owners);
    fetchMissing(relation.target(), links.others);
    for (std::size_t first = 0; first < links.owners.size();) {
        const RowKey key = links.owners[first];
        const auto past =
            static_cast<std::size_t>(std::find_if(links.owners.begin() + static_cast<std::ptrdiff_t>(first),
                                                  links.owners.end(), [=](RowKey other) { return other != key; }) -
                                     links.owners.begin());
        if (ListBase* list = listBeingLoaded(relation, objectOf(type, key))) {
            list->m_items.reserve(past - first);
            for (std::size_t i = first; i < past; ++i)
                if (Entity* target = objectOf(relation.target(), links.others[i]);
                    target != nullptr && !target->isDeleted())
                    list->m_items.push_back(target);
        }
        first = past;
    }
    for (const auto& change : m_context.m_links) {
        if (change.relation->linkTable != relation.linkTable)
            continue;
        Entity* owner = &change.owner->type() == &type ? change.owner : change.other;
        Entity* other = owner == change.owner ? change.other : change.owner;
        ListBase* list = listBeingLoaded(relation, owner);
        if (list == nullptr)
            continue;
        if (change.linked)
            list->m_items.push_back(other);
        else
            std::erase(list->m_items, other);
    }
}

RelationLoader::Links RelationLoader::readLinks(const ToMany& relation, const Objects& owners) {
    const KeyCondition condition(keysOf(owners));
    const StatementLoan rows = m_context.statement(
        fmt::format("SELECT \"{0}\", \"{1}\" FROM \"{2}\" WHERE \"{0}\"{3} ORDER BY \"{0}\", \"{1}\"",
                    relation.ownColumn, relation.otherColumn, relation.linkTable, condition.sql()));
    rows->bindAll(condition.values());
    Links links;
    while (rows->step()) {
        links.owners.push_back(rows->integer(0));
        links.others.push_back(rows->integer(1));
    }
    return links;
}

ListBase* RelationLoader::listBeingLoaded(const ToMany& relation, Entity* owner) {
    if (owner == nullptr)
        return nullptr;
    ListBase& list = relation.list(*owner);
    return list.m_state == ListBase::State::loading ? &list : nullptr;
}

} // namespace quillorn
