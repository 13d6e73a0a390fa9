#include "Store/Schema.h"

#include <algorithm>
#include <fmt/core.h>
#include <fmt/format.h>

namespace quillorn {

namespace {

std::string_view storageName(StorageType type) {
    switch (type) {
    case StorageType::integer:
        return "INTEGER";
    case StorageType::text:
        return "TEXT";
    case StorageType::blob:
        return "BLOB";
    }
    return "BLOB";
}

std::string reference(std::string_view table, OnDelete onDelete) {
    return fmt::format(" REFERENCES \"{}\"(key) ON DELETE {} DEFERRABLE INITIALLY DEFERRED", table,
                       onDelete == OnDelete::cascade ? "CASCADE" : "SET NULL");
}

std::string indexStatement(const TableSchema& table, const std::vector<std::string>& columns) {
    return fmt::format("CREATE INDEX \"{0}_{1}\" ON \"{0}\"(\"{2}\")", table.name, fmt::join(columns, "_"),
                       fmt::join(columns, "\", \""));
}

} // namespace

const TableSchema* Schema::table(std::string_view name) const {
    const auto found =
        std::find_if(tables.begin(), tables.end(), [&](const auto& table) { return table.name == name; });
    return found == tables.end() ? nullptr : &*found;
}

ColumnSchema idColumn() {
    ColumnSchema column;
    column.name = "id";
    column.type = StorageType::blob;
    column.required = true;
    return column;
}

std::string columnDefinition(const ColumnSchema& column) {
    std::string text = fmt::format("\"{}\" {}", column.name, storageName(column.type));
    if (column.required)
        text += " NOT NULL";
    if (!column.defaultValue.empty())
        text += " DEFAULT " + column.defaultValue;
    if (!column.references.empty())
        text += reference(column.references, column.onDelete);
    return text;
}

std::vector<std::string> creationStatements(const TableSchema& table) {
    std::string create = fmt::format("CREATE TABLE \"{}\" (key INTEGER PRIMARY KEY AUTOINCREMENT", table.name);
    for (const ColumnSchema& column : table.columns)
        create += ", " + columnDefinition(column);
    create += ") STRICT";

    std::vector<std::string> statements{create, indexStatement(table, {"id"})};
    const auto leadsAnIndex = [&](const std::string& name) {
        return std::any_of(table.indexes.begin(), table.indexes.end(),
                           [&](const auto& index) { return index[0] == name; });
    };
    for (const ColumnSchema& column : table.columns)
        if (!column.references.empty() && !leadsAnIndex(column.name))
            statements.push_back(indexStatement(table, {column.name}));
    for (const auto& columns : table.indexes)
        statements.push_back(indexStatement(table, columns));
    return statements;
}

std::vector<std::string> creationStatements(const LinkSchema& link) {
    return {
        fmt::format("CREATE TABLE \"{}\" (\"{}\" INTEGER NOT NULL{}, \"{}\" INTEGER NOT NULL{}, "
                    "PRIMARY KEY (\"{}\", \"{}\")) STRICT, WITHOUT ROWID",
                    link.name, link.firstColumn, reference(link.firstTable, OnDelete::cascade), link.secondColumn,
                    reference(link.secondTable, OnDelete::cascade), link.firstColumn, link.secondColumn),
        fmt::format("CREATE INDEX \"{0}_{1}\" ON \"{0}\"(\"{1}\", \"{2}\")", link.name, link.secondColumn,
                    link.firstColumn),
    };
}

} // namespace quillorn
