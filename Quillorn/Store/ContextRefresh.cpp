#include "Store/ContextRefresh.h"

#include "Store/KeyCondition.h"

#include <fmt/core.h>
#include <unordered_set>

namespace quillorn {

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

void ContextRefresh::rereadColumns(Entity& object, const Statement& row) const {
    object.m_id = row.uuid(1);
    int place = 2;
    std::uint32_t unsaved = object.m_changed;
    for (const Column& column : object.m_type->columns) {
        if ((unsaved & 1U) == 0)
            column.read(object, row, place);
        unsaved >>= 1U;
        ++place;
    }
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

} // namespace quillorn
