#include "Store/RelationLoader.h"

#include "Store/KeyList.h"

#include <algorithm>
#include <fmt/core.h>

namespace quillorn {

namespace {

/// The store's order; what is not stored yet comes last.
void sortByKey(std::vector<Entity*>& objects) {
    const auto rank = [](const Entity* object) { return static_cast<std::uint64_t>(object->key()) - 1; };
    const auto before = [&](const Entity* a, const Entity* b) { return rank(a) < rank(b); };
    if (!std::is_sorted(objects.begin(), objects.end(), before))
        std::stable_sort(objects.begin(), objects.end(), before);
}

} // namespace

Entity* RelationLoader::objectOf(const EntityType& type, RowKey key) {
    const auto& byKey = m_context.registryOf(type).byKey;
    const auto found = byKey.find(key);
    return found == byKey.end() ? nullptr : found->second;
}

void RelationLoader::fetchMissing(const EntityType& type, std::vector<RowKey> keys) {
    std::sort(keys.begin(), keys.end());
    keys.erase(std::unique(keys.begin(), keys.end()), keys.end());
    std::erase_if(keys, [&](RowKey key) { return objectOf(type, key) != nullptr; });
    if (keys.empty())
        return;
    Query query;
    if (keys.size() <= keyLookupLimit)
        query = {.where = "key IN (SELECT value FROM json_each(?))", .values = {keyList(keys)}};
    m_context.fetchInto(type, query, [](Entity&) {});
}

void RelationLoader::loadReferences(const EntityType& type, std::size_t column) {
    const Column& description = type.columns[column];
    const EntityType& target = description.target();
    Objects objects;
    std::vector<RowKey> keys;
    for (const auto& object : m_context.registryOf(type).objects) {
        const ReferenceBase& reference = description.reference(*object);
        if (reference.resolved)
            continue;
        objects.push_back(object.get());
        keys.push_back(reference.key);
    }
    fetchMissing(target, std::move(keys));
    for (Entity* object : objects) {
        ReferenceBase& reference = description.reference(*object);
        Entity* const found = objectOf(target, reference.key);
        reference.object = found != nullptr && !found->isDeleted() ? found : nullptr;
        reference.resolved = true;
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
    if (description.overLinks())
        loadLinks(type, description, owners);
    else
        loadChildren(description, owners);
    // Only now: after a failure the next touch tries again. A list that stayed empty means that there is nothing.
    for (Entity* owner : owners)
        description.list(*owner).m_state = ListBase::State::loaded;
}

void RelationLoader::loadChildren(const ToMany& relation, const Objects& owners) {
    const EntityType& target = relation.target();
    const std::size_t column = target.columnNamed(relation.inverse);
    Query query{.where = fmt::format("\"{}\" IS NOT NULL", relation.inverse)};
    if (owners.size() <= keyLookupLimit) {
        std::vector<RowKey> keys;
        for (const Entity* owner : owners)
            keys.push_back(owner->key());
        query = {.where = fmt::format("\"{}\" IN (SELECT value FROM json_each(?))", relation.inverse),
                 .values = {keyList(keys)}};
    }
    m_context.fetchInto(target, query, [](Entity&) {});
    // References of the targets show the rows as they are changed in this context, saved or not: so the lists are made
    // of them, and not of the rows just read.
    loadReferences(target, column);
    std::unordered_map<const Entity*, ListBase*> lists;
    for (Entity* owner : owners)
        lists.emplace(owner, &relation.list(*owner));
    for (const auto& child : m_context.registryOf(target).objects) {
        if (child->isDeleted())
            continue;
        const Entity* owner = target.columns[column].reference(*child).object;
        if (const auto found = lists.find(owner); owner != nullptr && found != lists.end())
            found->second->m_items.push_back(child.get());
    }
    for (const auto& [owner, list] : lists)
        sortByKey(list->m_items);
}

void RelationLoader::loadLinks(const EntityType& type, const ToMany& relation, const Objects& owners) {
    std::vector<RowKey> ownerKeys;
    for (const Entity* owner : owners)
        ownerKeys.push_back(owner->key());
    std::string sql = fmt::format("SELECT \"{0}\", \"{1}\" FROM \"{2}\"", relation.ownColumn, relation.otherColumn,
                                  relation.linkTable);
    const bool lookUp = owners.size() <= keyLookupLimit;
    if (lookUp)
        sql += fmt::format(" WHERE \"{}\" IN (SELECT value FROM json_each(?))", relation.ownColumn);
    sql += fmt::format(" ORDER BY \"{}\", \"{}\"", relation.ownColumn, relation.otherColumn);

    std::vector<std::pair<RowKey, RowKey>> pairs;
    {
        const StatementLoan rows = m_context.statement(sql);
        if (lookUp)
            rows->bind(1, std::string_view(keyList(ownerKeys)));
        while (rows->step())
            pairs.emplace_back(rows->integer(0), rows->integer(1));
    }
    std::vector<RowKey> targetKeys;
    for (const auto& [own, other] : pairs)
        targetKeys.push_back(other);
    fetchMissing(relation.target(), std::move(targetKeys));

    std::unordered_map<const Entity*, ListBase*> lists;
    for (Entity* owner : owners)
        lists.emplace(owner, &relation.list(*owner));
    const auto listOf = [&](const Entity* owner) {
        const auto found = lists.find(owner);
        return found == lists.end() ? nullptr : found->second;
    };
    for (const auto& [own, other] : pairs) {
        ListBase* list = listOf(objectOf(type, own));
        Entity* target = objectOf(relation.target(), other);
        if (list != nullptr && target != nullptr && !target->isDeleted())
            list->m_items.push_back(target);
    }
    for (const auto& change : m_context.m_links) {
        if (change.relation->linkTable != relation.linkTable)
            continue;
        Entity* owner = &change.owner->type() == &type ? change.owner : change.other;
        Entity* other = owner == change.owner ? change.other : change.owner;
        ListBase* list = listOf(owner);
        if (list == nullptr)
            continue;
        if (change.linked)
            list->m_items.push_back(other);
        else
            std::erase(list->m_items, other);
    }
}

} // namespace quillorn
