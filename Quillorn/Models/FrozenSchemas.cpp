#include "Models/SchemaVersions.h"

#include <string_view>
#include <utility>

// Schema versions that stores in the field have, and will have. Nothing that has shipped may follow a change of the
// live classes.

namespace quillorn {

namespace {

using Columns = std::vector<ColumnSchema>;

ColumnSchema plain(std::string_view name, StorageType type, bool required, std::string_view defaultValue = {}) {
    ColumnSchema column;
    column.name = name;
    column.type = type;
    column.required = required;
    column.defaultValue = defaultValue;
    return column;
}

ColumnSchema text(std::string_view name, std::string_view defaultValue) {
    return plain(name, StorageType::text, true, defaultValue);
}
ColumnSchema integer(std::string_view name, std::string_view defaultValue) {
    return plain(name, StorageType::integer, true, defaultValue);
}
ColumnSchema date(std::string_view name) {
    return plain(name, StorageType::integer, true);
}
ColumnSchema optionalText(std::string_view name) {
    return plain(name, StorageType::text, false);
}
ColumnSchema optionalDate(std::string_view name) {
    return plain(name, StorageType::integer, false);
}
ColumnSchema optionalId(std::string_view name) {
    return plain(name, StorageType::blob, false);
}

ColumnSchema reference(std::string_view name, std::string_view table, OnDelete onDelete) {
    ColumnSchema column = plain(name, StorageType::integer, false);
    column.references = table;
    column.onDelete = onDelete;
    return column;
}

TableSchema table(std::string_view name, const Columns& columns) {
    TableSchema schema{.name = std::string(name), .columns = {idColumn()}, .indexes = {}};
    schema.columns.insert(schema.columns.end(), columns.begin(), columns.end());
    return schema;
}

/// Columns that came to the end of one table.
struct Addition {
    std::string_view table;
    Columns columns;
};

/// What each version has more than the one before, from the second on.
const std::vector<Addition>& additions() {
    static const std::vector<Addition> all{
        /* 2 */ {"ProjectTask", {optionalText("sourceTitle"), optionalText("sourceURL")}},
        /* 3 */ {"ProjectTask", {integer("dueHasTime", "0")}},
    };
    return all;
}

Schema firstSchema() {
    constexpr auto cascade = OnDelete::cascade;
    Schema first;
    first.applicationId = 0x5175696C;
    first.version = 1;
    first.tables = {
        table("Client",
              {text("name", "''"), optionalText("clientDescription"), text("color", "'#007AFF'"),
               text("icon", "'building.2.fill'"), date("createdAt"), date("updatedAt"), integer("isArchived", "0")}),
        table("ProjectDivider",
              {text("title", "''"), integer("sortOrder", "0"), date("createdAt"), optionalId("clientID")}),
        table("Project", {text("name", "''"), optionalText("projectDescription"), text("color", "'#007AFF'"),
                          date("createdAt"), date("updatedAt"), integer("isArchived", "0"), integer("sortOrder", "0"),
                          optionalId("groupID"), reference("client", "Client", cascade)}),
        table("ProjectTask",
              {text("title", "''"), optionalText("taskDescription"), optionalDate("dueDate"),
               optionalDate("completedAt"), integer("priority", "1"), integer("status", "0"), integer("sortOrder", "0"),
               date("createdAt"), date("updatedAt"), reference("project", "Project", OnDelete::cascade),
               reference("parentTask", "ProjectTask", OnDelete::clear)}),
        table("Tag", {text("name", "''"), text("color", "'#007AFF'"), date("createdAt"), date("updatedAt")}),
        table("TimeEntry", {date("startTime"), optionalDate("endTime"), optionalText("notes"), optionalText("title"),
                            reference("task", "ProjectTask", cascade), reference("project", "Project", cascade)}),
        table("Note", {text("title", "'Untitled Note'"), text("content", "''"), date("createdAt"), date("updatedAt"),
                       integer("isPinned", "0"), reference("project", "Project", cascade),
                       reference("task", "ProjectTask", cascade)}),
        table("ChatMessage", {integer("role", "1"), text("content", "''"), date("createdAt"),
                              reference("project", "Project", cascade), reference("client", "Client", cascade)}),
    };
    for (TableSchema& each : first.tables)
        if (each.name == "TimeEntry")
            each.indexes = {{"task", "startTime", "endTime"}};
        else if (each.name == "ProjectTask")
            each.indexes = {{"parentTask", "completedAt"}};
    first.links = {{"ProjectTask_Tag", "task", "ProjectTask", "tag", "Tag"}};
    return first;
}

} // namespace

const std::vector<Schema>& describedSchemas() {
    static const std::vector<Schema> schemas = [] {
        std::vector<Schema> versions{firstSchema()};
        for (const Addition& addition : additions()) {
            Schema next = versions.back();
            ++next.version;
            for (TableSchema& each : next.tables)
                if (each.name == addition.table)
                    each.columns.insert(each.columns.end(), addition.columns.begin(), addition.columns.end());
            versions.push_back(std::move(next));
        }
        return versions;
    }();
    return schemas;
}

} // namespace quillorn
