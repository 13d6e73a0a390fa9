#include "Store/ContextSave.h"

#include "Store/KeyCondition.h"
#include "Store/StoreError.h"

#include <fmt/core.h>
#include <map>
#include <set>
#include <string>
#include <utility>

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
        writeAll();
        readLog();
        (*m_context.m_database)->statement("COMMIT")->run();
    } catch (...) {
        abandon();
        throw;
    }
    m_context.m_container.checkpointIfDue(**m_context.m_database);
    m_context.m_writeGuard.reset();
    noteEcho();
    settleObjects();
    m_context.m_container.publish();
    for (const auto& work : std::exchange(m_context.m_whenSaved, {}))
        work();
}

void ContextSave::runStatements(const std::function<bool()>& write) {
    try {
        ChangeLog log(**m_context.m_database, m_context.m_container.schema());
        log.suspend();
        if (!write())
            return abandon();
        log.resume();
        (*m_context.m_database)->statement("COMMIT")->run();
    } catch (...) {
        abandon();
        throw;
    }
    m_context.m_container.checkpointIfDue(**m_context.m_database);
    m_context.m_writeGuard.reset();
    m_context.m_container.publish();
}

void ContextSave::beginTransaction() {
    if (m_context.m_writeGuard)
        return; // open since the context began
    m_context.m_writeGuard.emplace(m_turn ? std::move(*m_turn) : m_context.m_container.lockForWriting(m_patience));
    if (!m_context.m_database)
        m_context.m_database.emplace(m_context.m_container.m_pool.borrow());
    Database& connection = **m_context.m_database;
    connection.rollBack(); // the snapshot so far: a reader can't become the writer of a store that has moved on
    m_context.m_container.checkFiles(&connection);
    connection.beginWriting(m_patience);
}

void ContextSave::writeAll() {
    m_logBefore = ChangeLog(**m_context.m_database, m_context.m_container.schema()).last();
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
    }
}

void ContextSave::readLog() {
    ChangeLog log(**m_context.m_database, m_context.m_container.schema());
    auto entries = log.since(m_logBefore);
    if (!entries)
        throw StoreError("The store's log of changes is damaged");
    m_entries = std::move(*entries);
    if (m_entries.empty())
        return;
    const std::int64_t last = m_entries.back().number;
    log.shorten(last);
    // Before the commit, so that nobody takes them for another process's.
    m_context.m_container.m_ownEntries.add(m_logBefore, last);
}

void ContextSave::noteEcho() const {
    if (!m_context.m_echoes || m_entries.empty())
        return;
    // What the store's own rules have changed is news to this context too.
    std::set<std::pair<const EntityType*, RowKey>> written;
    for (const auto* objects : {&m_context.m_inserted, &m_context.m_changed})
        for (const Entity* object : *objects)
            written.emplace(object->m_type, object->m_key);
    for (const auto& entry : m_entries)
        if (entry.kind != ChangeLog::Entry::Kind::updated || written.contains({entry.type, entry.key}))
            m_context.m_echoes->insert(entry.number);
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
    for (const auto& entry : m_entries) {
        if (entry.kind != ChangeLog::Entry::Kind::deleted)
            continue;
        Entity* const* found = m_context.registryOf(*entry.type).byKey.find(entry.key);
        if (found == nullptr)
            continue;
        (*found)->m_state = Entity::State::deleted;
        deletions = true;
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

void ContextSave::abandon() noexcept {
    if (m_context.m_database)
        (*m_context.m_database)->rollBack();
    if (!m_entries.empty())
        m_context.m_container.m_ownEntries.takeBack(m_logBefore);
    m_context.m_writeGuard.reset();
    for (Entity* object : m_context.m_inserted)
        object->m_key = 0;
}

} // namespace quillorn
