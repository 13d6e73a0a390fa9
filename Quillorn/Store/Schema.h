#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace quillorn {

struct EntityType;

/// How SQLite holds a column. Dates are integers of microseconds since 1970, enums and bools integers, identifiers
/// blobs of 16 bytes.
enum class StorageType { integer, text, blob };

/// What becomes of a row when the row that its reference names is deleted.
enum class OnDelete { clear, cascade };

struct ColumnSchema {
    std::string name;
    StorageType type = StorageType::integer;
    bool required = false;
    /// An SQL literal; empty for none.
    std::string defaultValue;
    /// The table that this column refers to; empty for a plain column.
    std::string references;
    OnDelete onDelete = OnDelete::clear;

    friend bool operator==(const ColumnSchema&, const ColumnSchema&) = default;
};

/// A table. Beside its columns each has the private row key "key", an integer that is never used twice.
struct TableSchema {
    std::string name;
    std::vector<ColumnSchema> columns;
    /// Further indexes, each a list of columns. References and "id" have one by themselves.
    std::vector<std::vector<std::string>> indexes;
};

/// A many-to-many relation: a table of pairs of row keys, indexed both ways.
struct LinkSchema {
    std::string name;
    std::string firstColumn;
    std::string firstTable;
    std::string secondColumn;
    std::string secondTable;
};

/// One version of the data model.
struct Schema {
    /// Marks the files of this program, in SQLite's "application_id".
    std::int32_t applicationId = 0;
    /// Stands in SQLite's "user_version".
    int version = 0;
    std::vector<TableSchema> tables;
    std::vector<LinkSchema> links;
    /// The live types in the order of saving, what is referred to first; empty in frozen versions.
    std::vector<const EntityType*> entities;

    const TableSchema* table(std::string_view name) const;
};

/// The column of the public identifier, which every table has first.
ColumnSchema idColumn();
/// The statements that make what the schema describes.
std::vector<std::string> creationStatements(const TableSchema& table);
std::vector<std::string> creationStatements(const LinkSchema& link);
/// "name TYPE …" as it stands in CREATE TABLE and ALTER TABLE.
std::string columnDefinition(const ColumnSchema& column);

} // namespace quillorn
