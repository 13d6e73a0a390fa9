#include "Store/EntityType.h"

#include <algorithm>
#include <fmt/core.h>

namespace quillorn {

namespace {

template <class Entries>
std::size_t placeNamed(const Entries& entries, std::string_view name) {
    const auto found =
        std::find_if(entries.begin(), entries.end(), [&](const auto& entry) { return entry.name == name; });
    return static_cast<std::size_t>(found - entries.begin());
}

} // namespace

std::size_t EntityType::columnNamed(std::string_view column) const {
    return placeNamed(columns, column);
}

std::size_t EntityType::relationNamed(std::string_view relation) const {
    return placeNamed(relations, relation);
}

const ToMany* EntityType::inverseOf(std::size_t column) const {
    for (const ToMany& relation : columns[column].target().relations)
        if (!relation.overLinks() && &relation.target() == this && relation.inverse == columns[column].name)
            return &relation;
    return nullptr;
}

EntityType makeEntityType(std::string_view name, std::span<const Column> columns, std::span<const ToMany> relations,
                          std::unique_ptr<Entity> (*make)(), std::vector<std::vector<std::string>> indexes) {
    std::string names = "key, id";
    std::string parameters = "?, ?";
    for (const Column& column : columns) {
        names += fmt::format(", \"{}\"", column.name);
        parameters += ", ?";
    }
    return {
        .name = name,
        .columns = columns,
        .relations = relations,
        .make = make,
        .indexes = std::move(indexes),
        .select = fmt::format("SELECT {} FROM \"{}\"", names, name),
        .insert = fmt::format("INSERT INTO \"{}\" ({}) VALUES ({})", name, names, parameters),
    };
}

TableSchema tableSchema(const EntityType& type) {
    const std::unique_ptr<Entity> blank = type.make();
    TableSchema table{.name = std::string(type.name), .columns = {idColumn()}, .indexes = type.indexes};
    for (const Column& column : type.columns)
        table.columns.push_back({
            .name = std::string(column.name),
            .type = column.storage,
            .required = column.required,
            .defaultValue = column.defaultLiteral(*blank),
            .references = column.target != nullptr ? std::string(column.target().name) : std::string(),
            .onDelete = column.onDelete,
        });
    return table;
}

std::string sqlLiteral(std::int64_t value) {
    return std::to_string(value);
}

std::string sqlLiteral(std::string_view value) {
    std::string literal = "'";
    for (const char byte : value)
        literal += byte == '\'' ? "''" : std::string(1, byte);
    return literal + "'";
}

} // namespace quillorn
