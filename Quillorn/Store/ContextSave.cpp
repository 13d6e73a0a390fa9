#include "Store/ContextSave.h"

#include "Store/KeyCondition.h"

#include <fmt/core.h>
#include <string>

namespace quillorn {

void ContextSave::run() {
    if (!m_context.hasChanges()) {
        if (m_context.m_writeGuard)
            (*m_context.m_database)->rollBack();
        m_context.m_writeGuard.reset();
        return;
    }
    try {
        beginTransaction();
        observeRows();
        writeAll();
        (*m_context.m_database)->statement("COMMIT")->run();
    } catch (...) {
        abandon();
        throw;
    }
    Database& connection = **m_context.m_database;
    connection.observeRows(nullptr);
    m_context.m_container.checkpointIfDue(connection);
    m_context.m_writeGuard.reset();
    settleObjects();
    publish();
}

void ContextSave::beginTransaction() {
    if (m_context.m_writeGuard)
        return; // open since the context began
    m_context.m_writeGuard.emplace(m_context.m_container.lockForWriting(m_patience));
    if (!m_context.m_database)
        m_context.m_database.emplace(m_context.m_container.m_pool.borrow());
    Database& connection = **m_context.m_database;
    connection.rollBack(); // the snapshot so far: a reader can't become the writer of a store that has moved on
    m_context.m_container.checkFiles(connection);
    connection.beginWriting(m_patience);
}

void ContextSave::observeRows() {
    (*m_context.m_database)->observeRows([this](std::string_view table, RowKey key, RowChange change) {
        for (const auto& registry : m_context.m_registries)
            if (registry.type->name == table)
                noteRow(registry.type, key, change);
    });
}

void ContextSave::noteRow(const EntityType* type, RowKey key, RowChange change) {
    const auto [place, isNew] = m_rows.emplace(RowId{type, key}, change);
    // A row that was inserted and then updated is new to everybody else.
    if (!isNew && change != RowChange::updated)
        place->second = change;
}

void ContextSave::writeAll() {
    assignKeys();
    for (const auto& registry : m_context.m_registries)
        for (Entity* object : m_context.m_inserted)
            if (object->m_type == registry.type)
                insertRow(*object);
    for (Entity* object : m_context.m_changed)
        updateRow(*object);
    deleteRows();
    writeLinks();
}

void ContextSave::assignKeys() {
    // Under the write lock nobody else takes keys; so objects that refer to each other can be inserted in any order.
    std::map<const EntityType*, RowKey> last;
    for (Entity* object : m_context.m_inserted) {
        const auto [place, isNew] = last.emplace(object->m_type, 0);
        if (isNew)
            place->second = (*m_context.m_database)->lastKey(object->m_type->name);
        object->m_key = ++place->second;
    }
}

void ContextSave::insertRow(Entity& object) {
    const StatementLoan statement = m_context.statement(object.m_type->insert);
    statement->bind(1, object.m_key);
    statement->bind(2, object.m_id);
    int parameter = 3;
    for (const Column& column : object.m_type->columns)
        column.bind(object, *statement, parameter++);
    statement->run();
}

void ContextSave::updateRow(Entity& object) {
    std::string sql = fmt::format("UPDATE \"{}\" SET ", object.m_type->name);
    const auto& columns = object.m_type->columns;
    const auto isChanged = [&](std::size_t column) { return (object.m_changed >> column & 1U) != 0; };
    const char* separator = "";
    for (std::size_t column = 0; column < columns.size(); ++column) {
        if (!isChanged(column))
            continue;
        sql += fmt::format("{}\"{}\" = ?", separator, columns[column].name);
        separator = ", ";
    }
    const StatementLoan statement = m_context.statement(sql + " WHERE key = ?");
    int parameter = 1;
    for (std::size_t column = 0; column < columns.size(); ++column)
        if (isChanged(column))
            columns[column].bind(object, *statement, parameter++);
    statement->bind(parameter, object.m_key);
    statement->run();
    if ((*m_context.m_database)->changes() == 0)
        m_vanished.push_back(&object);
}

void ContextSave::deleteRows() {
    for (const auto& registry : m_context.m_registries) {
        std::vector<RowKey> keys;
        for (const Entity* object : m_context.m_removed)
            if (object->m_type == registry.type)
                keys.push_back(object->m_key);
        if (keys.empty())
            continue;
        const StatementLoan statement = m_context.statement(
            fmt::format("DELETE FROM \"{}\" WHERE key IN (SELECT value FROM json_each(?))", registry.type->name));
        statement->bind(1, std::string_view(keyList(keys)));
        statement->run();
    }
}

void ContextSave::writeLinks() {
    for (const auto& change : m_context.m_links) {
        const ToMany& relation = *change.relation;
        // A row that somebody else has deleted meanwhile takes no links.
        const StatementLoan statement = m_context.statement(
            change.linked
                ? fmt::format("INSERT OR IGNORE INTO \"{0}\" (\"{1}\", \"{2}\") SELECT a.key, b.key FROM \"{3}\" a, "
                              "\"{4}\" b WHERE a.key = ? AND b.key = ?",
                              relation.linkTable, relation.ownColumn, relation.otherColumn, change.owner->m_type->name,
                              change.other->m_type->name)
                : fmt::format("DELETE FROM \"{}\" WHERE \"{}\" = ? AND \"{}\" = ?", relation.linkTable,
                              relation.ownColumn, relation.otherColumn));
        statement->bind(1, change.owner->m_key);
        statement->bind(2, change.other->m_key);
        statement->run();
        noteRow(change.owner->m_type, change.owner->m_key, RowChange::updated);
    }
}

void ContextSave::settleObjects() {
    for (Entity* object : m_context.m_inserted) {
        object->m_state = Entity::State::stored;
        object->m_changed = 0;
        m_context.registryOf(*object->m_type).byKey[object->m_key] = object;
    }
    for (Entity* object : m_context.m_changed)
        object->m_changed = 0;
    bool deletions = false;
    for (auto& registry : m_context.m_registries) {
        for (const auto& [row, change] : m_rows) {
            if (row.first != registry.type || change != RowChange::deleted)
                continue;
            Entity* const* found = registry.byKey.find(row.second);
            if (found == nullptr)
                continue;
            (*found)->m_state = Entity::State::deleted;
            deletions = true;
        }
    }
    for (Entity* object : m_vanished)
        object->m_state = Entity::State::deleted;
    m_context.m_inserted.clear();
    m_context.m_changed.clear();
    m_context.m_removed.clear();
    m_context.m_links.clear();
    if (deletions || !m_vanished.empty())
        m_context.forgetDeleted();
}

void ContextSave::publish() {
    auto changes = std::make_shared<ChangeSet>();
    for (const auto& [row, change] : m_rows)
        changes->rows.push_back({row.first, row.second, change});
    m_context.m_container.publish(std::move(changes));
}

void ContextSave::abandon() noexcept {
    if (m_context.m_database) {
        (*m_context.m_database)->rollBack();
        (*m_context.m_database)->observeRows(nullptr);
    }
    m_context.m_writeGuard.reset();
    for (Entity* object : m_context.m_inserted)
        object->m_key = 0;
}

} // namespace quillorn
