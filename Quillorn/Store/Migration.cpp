#include "Store/Migration.h"

#include "Store/Database.h"
#include "Store/StoreError.h"

#include <algorithm>
#include <fmt/core.h>
#include <map>

namespace quillorn {

namespace {

struct ActualColumn {
    bool required = false;
    bool hasDefault = false;
};

using ActualColumns = std::map<std::string, ActualColumn, std::less<>>;

int versionOf(Database& database) {
    return static_cast<int>(database.integer("PRAGMA user_version"));
}

bool hasTable(Database& database, const std::string& name) {
    const StatementLoan query = database.statement("SELECT 1 FROM sqlite_schema WHERE type = 'table' AND name = ?");
    query->bind(1, std::string_view(name));
    return query->step();
}

ActualColumns columnsOf(Database& database, const std::string& table) {
    const StatementLoan query =
        database.statement("SELECT name, \"notnull\", dflt_value IS NOT NULL FROM pragma_table_info(?)");
    query->bind(1, std::string_view(table));
    ActualColumns columns;
    while (query->step())
        columns.emplace(query->text(0), ActualColumn{query->integer(1) != 0, query->integer(2) != 0});
    return columns;
}

void createAll(Database& database, const std::vector<std::string>& statements) {
    for (const std::string& statement : statements)
        database.execute(statement);
}

void addMissing(Database& database, const Schema& schema) {
    for (const TableSchema& table : schema.tables) {
        if (!hasTable(database, table.name)) {
            createAll(database, creationStatements(table));
            continue;
        }
        const ActualColumns present = columnsOf(database, table.name);
        for (const ColumnSchema& column : table.columns)
            if (!present.contains(column.name))
                database.execute(fmt::format("ALTER TABLE \"{}\" ADD COLUMN {}", table.name, columnDefinition(column)));
    }
    for (const LinkSchema& link : schema.links)
        if (!hasTable(database, link.name))
            createAll(database, creationStatements(link));
}

/// Throws unless the file has every table and column of the schema, and no others that would stop an insert.
void verify(Database& database, const Schema& schema) {
    const auto mismatch = [&](const std::string& what) {
        throw StoreError(fmt::format("The store does not match schema version {}: {}", schema.version, what));
    };
    for (const TableSchema& table : schema.tables) {
        ActualColumns present = columnsOf(database, table.name);
        if (present.empty())
            mismatch("table " + table.name + " is missing");
        present.erase("key");
        for (const ColumnSchema& column : table.columns)
            if (present.erase(column.name) == 0)
                mismatch("column " + table.name + "." + column.name + " is missing");
        for (const auto& [name, column] : present)
            if (column.required && !column.hasDefault)
                mismatch("column " + table.name + "." + name + " is unknown");
    }
    for (const LinkSchema& link : schema.links)
        if (!hasTable(database, link.name))
            mismatch("table " + link.name + " is missing");
}

void writeVersion(Database& database, const Schema& schema) {
    database.execute(
        fmt::format("PRAGMA application_id = {}; PRAGMA user_version = {}", schema.applicationId, schema.version));
}

const Schema* schemaOfVersion(const MigrationPlan& plan, int version) {
    const auto found = std::find_if(plan.schemas.begin(), plan.schemas.end(),
                                    [&](const Schema* schema) { return schema->version == version; });
    return found == plan.schemas.end() ? nullptr : *found;
}

} // namespace

StoreContent inspectStore(Database& database, const Schema& schema) {
    const int version = versionOf(database);
    const auto applicationId = static_cast<std::int32_t>(database.integer("PRAGMA application_id"));
    const bool hasTables = database.integer("SELECT count(*) FROM sqlite_schema") != 0;
    if (version == 0 && applicationId == 0 && !hasTables)
        return StoreContent::empty;
    if (applicationId != schema.applicationId)
        throw StoreError("The store file is a database of another program");
    if (version > schema.version)
        throw StoreError(fmt::format("The store has schema version {}, and this program knows versions up to {}",
                                     version, schema.version));
    return StoreContent::ours;
}

void createStore(Database& database, const Schema& schema) {
    Transaction transaction(database, Transaction::Kind::write);
    addMissing(database, schema);
    writeVersion(database, schema);
    transaction.commit();
}

void migrateStore(Database& database, const Schema& schema, const MigrationPlan& plan) {
    int version = versionOf(database);
    const Schema* from = schemaOfVersion(plan, version);
    if (from == nullptr)
        throw StoreError(fmt::format("The store has schema version {}, which no migration starts from", version));
    verify(database, *from);
    for (const MigrationStage& stage : plan.stages) {
        if (stage.from != version)
            continue;
        const Schema* to = schemaOfVersion(plan, stage.to);
        if (to == nullptr)
            throw StoreError(fmt::format("No schema of version {} is known", stage.to));
        Transaction transaction(database, Transaction::Kind::write);
        addMissing(database, *to);
        writeVersion(database, *to);
        transaction.commit();
        version = stage.to;
    }
    if (version != schema.version)
        throw StoreError(fmt::format("No migration leads from schema version {} to {}", version, schema.version));
}

void migrateStoreByInference(Database& database, const Schema& schema) {
    Transaction transaction(database, Transaction::Kind::write);
    addMissing(database, schema);
    verify(database, schema);
    writeVersion(database, schema);
    transaction.commit();
}

} // namespace quillorn
