#include "Store/ContextRefresh.h"

#include "Store/KeyCondition.h"

#include <algorithm>
#include <cstdint>
#include <fmt/core.h>
#include <map>
#include <unordered_set>

namespace quillorn {

namespace {

/// The store's order; what is not stored yet comes last.
bool isBefore(const Entity* a, const Entity* b) {
    return static_cast<std::uint64_t>(a->key()) - 1 < static_cast<std::uint64_t>(b->key()) - 1;
}

} // namespace

void ContextRefresh::addInOrder(ListBase& list, Entity& object) {
    const auto place = std::ranges::lower_bound(list.m_items, &object, isBefore);
    if (place == list.m_items.end() || *place != &object)
        list.m_items.insert(place, &object);
    list.m_state = ListBase::State::loaded;
}

void ContextRefresh::run() {
    m_context.endReading();
    for (auto& registry : m_context.m_registries)
        rereadRows(registry);
    for (auto& registry : m_context.m_registries)
        unloadLists(registry);
    m_context.forgetDeleted();
}

void ContextRefresh::rereadRows(ModelContext::Registry& registry) {
    std::unordered_set<Entity*> gone;
    std::vector<RowKey> keys;
    for (const auto& object : registry.objects) {
        if (object->m_state != Entity::State::stored)
            continue;
        gone.insert(object.get());
        keys.push_back(object->m_key);
    }
    if (keys.empty())
        return;
    const KeyCondition condition(keys);
    const StatementLoan rows = m_context.statement(registry.type->select + " WHERE key" + condition.sql());
    rows->bindAll(condition.values());
    while (rows->step()) {
        Entity* const* known = registry.byKey.find(rows->integer(0));
        if (known != nullptr && gone.erase(*known) > 0)
            rereadColumns(**known, *rows);
    }
    for (Entity* object : gone)
        forget(*object);
}

void ContextRefresh::rereadColumns(Entity& object, const Statement& row) {
    if (const UUID id = row.uuid(1); object.m_id != id) {
        object.m_id = id;
        m_context.registryOf(*object.m_type).byId[id] = &object;
    }
    const auto& columns = object.m_type->columns;
    for (std::size_t column = 0; column < columns.size(); ++column) {
        if ((object.m_changed >> column & 1U) != 0)
            continue;
        if (columns[column].reference != nullptr)
            rereadReference(object, column, row);
        else
            columns[column].read(object, row, static_cast<int>(column) + 2);
    }
}

void ContextRefresh::rereadReference(Entity& object, std::size_t column, const Statement& row) {
    const Column& description = object.m_type->columns[column];
    ReferenceBase& reference = description.reference(object);
    const ReferenceBase former = reference;
    description.read(object, row, static_cast<int>(column) + 2);
    const RowKey formerKey = Entity::keyOf(former);
    if (reference.m_key == formerKey) {
        reference = former;
        return;
    }
    if (ListBase* list = listOf(*object.m_type, column, formerKey))
        std::erase(list->m_items, &object);
    if (Entity* target = objectOf(description.target(), reference.m_key)) {
        reference.m_object = target;
        reference.m_resolved = true;
    }
    if (ListBase* list = listOf(*object.m_type, column, reference.m_key))
        addInOrder(*list, object);
}

void ContextRefresh::forget(Entity& object) {
    object.m_state = Entity::State::deleted;
    std::erase(m_context.m_changed, &object);
    std::erase_if(m_context.m_links,
                  [&](const auto& change) { return change.owner == &object || change.other == &object; });
}

void ContextRefresh::unloadLists(ModelContext::Registry& registry) const {
    for (const auto& object : registry.objects) {
        if (object->m_state != Entity::State::stored)
            continue;
        for (const ToMany& relation : registry.type->relations) {
            ListBase& list = relation.list(*object);
            list.m_items.clear();
            list.m_state = ListBase::State::notLoaded;
        }
    }
}

void ContextRefresh::run(const std::vector<LoggedRow>& rows) {
    std::map<const EntityType*, std::vector<RowKey>> keys;
    for (const LoggedRow& logged : rows) {
        const ChangeSet::Row& row = logged.row;
        Entity* object = objectOf(*row.type, row.key);
        if (object != nullptr && logged.isLinked)
            unloadLinks(*object);
        if (!logged.isNews)
            continue;
        if (row.change == RowChange::deleted) {
            if (Entity* const* known = m_context.registryOf(*row.type).byKey.find(row.key))
                leaveLists(**known);
        } else if (object != nullptr || mayBelongToLists(*row.type)) {
            keys[row.type].push_back(row.key);
        }
    }
    for (const auto& [type, ofType] : keys)
        readRows(m_context.registryOf(*type), ofType);
}

void ContextRefresh::readRows(Registry& registry, const std::vector<RowKey>& keys) {
    const KeyCondition condition(keys);
    const StatementLoan rows = m_context.statement(registry.type->select + " WHERE key" + condition.sql());
    rows->bindAll(condition.values());
    KeyMap<bool> wanted;
    for (const RowKey key : keys)
        wanted[key] = true;
    while (rows->step()) {
        const RowKey key = rows->integer(0);
        if (!wanted.contains(key))
            continue;
        Entity* const* known = registry.byKey.find(key);
        if (known == nullptr)
            takeInForLists(registry, *rows);
        else if (!(*known)->isDeleted())
            rereadColumns(**known, *rows);
    }
}

bool ContextRefresh::mayBelongToLists(const EntityType& type) const {
    return std::ranges::any_of(type.columns, [&](const Column& column) {
        return column.target != nullptr && !m_context.registryOf(column.target()).objects.empty();
    });
}

void ContextRefresh::takeInForLists(Registry& registry, const Statement& row) {
    std::vector<ListBase*> lists;
    const auto& columns = registry.type->columns;
    for (std::size_t column = 0; column < columns.size(); ++column)
        if (columns[column].reference != nullptr)
            if (ListBase* list = listOf(*registry.type, column, row.integer(static_cast<int>(column) + 2)))
                lists.push_back(list);
    if (lists.empty())
        return;
    Entity& object = m_context.objectFromRow(registry, row);
    for (ListBase* list : lists)
        addInOrder(*list, object);
}

void ContextRefresh::leaveLists(Entity& object) {
    const auto& columns = object.m_type->columns;
    for (std::size_t column = 0; column < columns.size(); ++column)
        if (columns[column].reference != nullptr)
            if (ListBase* list = listOf(*object.m_type, column, Entity::keyOf(columns[column].reference(object))))
                std::erase(list->m_items, &object);
    const auto takeOut = [&](Entity& other) {
        for (const ToMany& relation : other.m_type->relations)
            if (relation.overLinks())
                std::erase(relation.list(other).m_items, &object);
    };
    for (const auto& change : m_context.m_links)
        if (change.owner == &object || change.other == &object)
            takeOut(change.owner == &object ? *change.other : *change.owner);
    forget(object);
    clearUnsavedReferencesTo(object);
}

/// Those of stored rows follow with the rows: the store has cleared or deleted them.
void ContextRefresh::clearUnsavedReferencesTo(const Entity& object) const {
    for (const auto* others : {&m_context.m_inserted, &m_context.m_changed})
        for (Entity* other : *others)
            for (const Column& column : other->m_type->columns)
                if (column.reference != nullptr && column.reference(*other).m_object == &object)
                    column.reference(*other) = {};
}

void ContextRefresh::unloadLinks(Entity& object) {
    for (const ToMany& relation : object.m_type->relations) {
        if (!relation.overLinks())
            continue;
        ListBase& list = relation.list(object);
        list.m_items.clear();
        list.m_state = ListBase::State::notLoaded;
    }
}

ListBase* ContextRefresh::listOf(const EntityType& type, std::size_t column, RowKey target) const {
    const ToMany* inverse = target == 0 ? nullptr : type.inverseOf(column);
    Entity* owner = inverse == nullptr ? nullptr : objectOf(type.columns[column].target(), target);
    if (owner == nullptr)
        return nullptr;
    ListBase& list = inverse->list(*owner);
    return list.m_state == ListBase::State::notLoaded ? nullptr : &list;
}

Entity* ContextRefresh::objectOf(const EntityType& type, RowKey key) const {
    Entity* const* found = m_context.registryOf(type).byKey.find(key);
    return found == nullptr || (*found)->isDeleted() ? nullptr : *found;
}

} // namespace quillorn
