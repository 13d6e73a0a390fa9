#include "Store/ModelContext.h"

#include "Store/ContextRefresh.h"
#include "Store/ContextSave.h"
#include "Store/RelationLoader.h"
#include "Store/StoreError.h"

#include <algorithm>
#include <cassert>
#include <stdexcept>

namespace quillorn {

ModelContext::ModelContext(ModelContainer& container, Intent intent)
    : m_container(container),
      m_thread(std::this_thread::get_id()) {
    const auto& entities = container.schema().entities;
    m_registries.resize(entities.size());
    for (std::size_t place = 0; place < entities.size(); ++place)
        m_registries[place].type = entities[place];
    if (intent == Intent::update) {
        m_writeGuard.emplace(container.lockForWriting());
        m_database.emplace(container.m_pool.borrow());
        container.checkFiles(&**m_database);
        (*m_database)->beginWriting(WriteLock::usualPatience);
    }
}

ModelContext::~ModelContext() {
    // The connection rolls back before the lock goes.
    m_database.reset();
    m_writeGuard.reset();
}

void ModelContext::checkThread() const {
    assert(m_thread == std::this_thread::get_id());
}

ModelContext::Registry& ModelContext::registryOf(const EntityType& type) {
    checkThread();
    for (Registry& registry : m_registries)
        if (registry.type == &type)
            return registry;
    throw std::logic_error("a type that is not in the schema");
}

Database& ModelContext::database() {
    checkThread();
    if (!m_database) {
        m_database.emplace(m_container.m_pool.borrow());
        noteUse();
    }
    Database& connection = **m_database;
    // A store in memory has no snapshots: there a reader would stop the writers.
    if (!connection.inTransaction() && !m_container.isInMemory())
        connection.statement("BEGIN")->run();
    return connection;
}

StatementLoan ModelContext::statement(std::string_view sql) {
    return database().statement(sql);
}

void ModelContext::endReading() {
    checkThread();
    if (m_writeGuard)
        return; // there is an unsaved write transaction
    m_database.reset();
}

Entity& ModelContext::objectFromRow(Registry& registry, const Statement& row) {
    const RowKey key = row.integer(0);
    Entity*& place = registry.byKey[key];
    if (place != nullptr)
        return *place;
    std::unique_ptr<Entity> object = registry.type->make();
    object->m_context = this;
    object->m_type = registry.type;
    object->m_state = Entity::State::stored;
    object->m_key = key;
    object->m_id = row.uuid(1);
    int column = 2;
    for (const Column& description : registry.type->columns)
        description.read(*object, row, column++);
    for (const ToMany& relation : registry.type->relations)
        relation.list(*object).m_state = ListBase::State::notLoaded;
    registry.objects.push_back(std::move(object));
    place = registry.objects.back().get();
    return *place;
}

Entity* ModelContext::findById(const EntityType& type, const UUID& id) {
    Registry& registry = registryOf(type);
    for (; registry.indexed < registry.objects.size(); ++registry.indexed) {
        Entity* object = registry.objects[registry.indexed].get();
        registry.byId.try_emplace(object->m_id, object);
    }
    const auto known = registry.byId.find(id);
    if (known != registry.byId.end() && known->second->m_id == id && !known->second->isDeleted())
        return known->second;
    Entity* found = nullptr;
    fetchInto(type, Query{.where = "id = ?", .values = {id}, .order = "key LIMIT 1"},
              [&](Entity& object) { found = &object; });
    return found;
}

Entity* ModelContext::findByKey(const EntityType& type, RowKey key) {
    Entity* found = nullptr;
    if (Entity* const* known = registryOf(type).byKey.find(key))
        return (*known)->isDeleted() ? nullptr : *known;
    fetchInto(type, Query{.where = "key = ?", .values = {key}}, [&](Entity& object) { found = &object; });
    return found;
}

Entity& ModelContext::insertBlank(const EntityType& type) {
    noteUse();
    Registry& registry = registryOf(type);
    std::unique_ptr<Entity> object = type.make();
    object->m_context = this;
    object->m_type = &type;
    object->m_id = UUID::random(m_container.random());
    m_inserted.push_back(object.get());
    registry.objects.push_back(std::move(object));
    return *m_inserted.back();
}

void ModelContext::noteChanged(Entity& object) {
    checkThread();
    assert(!object.isDeleted());
    noteUse();
    if (object.m_state == Entity::State::stored)
        m_changed.push_back(&object);
}

void ModelContext::noteLink(const ToMany& relation, Entity& owner, Entity& other, bool linked) {
    noteUse();
    // Undoing an unsaved change takes it back; the same pair may also have been changed from its other side.
    const auto samePair = [&](const LinkChange& change) {
        return change.relation->linkTable == relation.linkTable &&
               ((change.owner == &owner && change.other == &other) ||
                (change.owner == &other && change.other == &owner));
    };
    const auto found = std::find_if(m_links.begin(), m_links.end(), samePair);
    if (found != m_links.end())
        m_links.erase(found);
    else
        m_links.push_back({&relation, &owner, &other, linked});
}

void ModelContext::remove(Entity& object) {
    checkThread();
    if (object.isDeleted())
        return;
    noteUse();
    if (object.m_state == Entity::State::inserted)
        std::erase(m_inserted, &object);
    else
        m_removed.push_back(&object);
    std::erase(m_changed, &object);
    std::erase_if(m_links,
                  [&](const LinkChange& change) { return change.owner == &object || change.other == &object; });
    object.m_state = Entity::State::deleted;
    removeUnsavedBelongings(object);
    forgetDeleted();
}

void ModelContext::removeUnsavedBelongings(const Entity& owner) {
    const auto belongs = [&](Entity& object) {
        const auto& columns = object.m_type->columns;
        return std::any_of(columns.begin(), columns.end(), [&](const Column& column) {
            return column.onDelete == OnDelete::cascade && column.reference(object).m_object == &owner;
        });
    };
    std::vector<Entity*> belongings;
    for (Entity* object : m_inserted)
        if (belongs(*object))
            belongings.push_back(object);
    for (Entity* object : belongings)
        remove(*object);
}

void ModelContext::forgetDeleted() {
    const auto isGone = [](const Entity* object) { return object->isDeleted(); };
    for (Registry& registry : m_registries) {
        for (const auto& object : registry.objects) {
            for (const ToMany& relation : registry.type->relations)
                std::erase_if(relation.list(*object).m_items, isGone);
            for (const Column& column : registry.type->columns) {
                if (column.reference == nullptr)
                    continue;
                ReferenceBase& reference = column.reference(*object);
                if (reference.m_object == nullptr || !reference.m_object->isDeleted())
                    continue;
                if (!object->isDeleted())
                    reference = {};
            }
        }
    }
}

void ModelContext::save(std::chrono::milliseconds patience) {
    checkThread();
    ContextSave(*this, patience).run();
}

void ModelContext::save(WriteLock::Guard turn) {
    checkThread();
    ContextSave(*this, m_patience, std::move(turn)).run();
}

void ModelContext::refresh() {
    checkThread();
    ContextRefresh(*this).run();
}

void ModelContext::loadReferences(const EntityType& type, std::size_t column) {
    RelationLoader(*this).loadReferences(type, column);
}

void ModelContext::loadList(const EntityType& type, std::size_t relation) {
    RelationLoader(*this).loadList(type, relation);
}

} // namespace quillorn
