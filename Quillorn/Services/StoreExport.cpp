#include "Services/StoreExport.h"

#include "Models/ProjectTask.h"
#include "Services/ExportFormat.h"
#include "Store/EntityType.h"
#include "Store/ModelContext.h"

#include <fmt/core.h>

namespace quillorn {

namespace {

/// Key, id and all fields, references as ids; rows in the order in which they were made.
std::string selectFor(const ExportTable& table) {
    std::string columns = "t.key, t.id";
    for (const ExportField& field : table.fields)
        columns += field.kind == ExportField::Kind::reference
                       ? fmt::format(", (SELECT id FROM \"{}\" WHERE key = t.\"{}\")", field.column->target().name,
                                     field.column->name)
                       : fmt::format(", t.\"{}\"", field.column->name);
    return fmt::format("SELECT {} FROM \"{}\" t ORDER BY t.key", columns, table.type->name);
}

void writeField(JsonWriter& writer, const ExportField& field, const Statement& row, int column) {
    if (row.isNull(column))
        return;
    writer.key(field.name);
    switch (field.kind) {
    case ExportField::Kind::text:
        return writer.string(row.text(column));
    case ExportField::Kind::flag:
        return writer.boolean(row.integer(column) != 0);
    case ExportField::Kind::number:
        return writer.integer(row.integer(column));
    case ExportField::Kind::date:
        return writer.string(exportedDate(Date(std::chrono::microseconds(row.integer(column)))));
    case ExportField::Kind::id:
    case ExportField::Kind::reference:
        return writer.string(row.uuid(column).string());
    }
}

/// The tags of tasks, asked for in the order of the tasks' keys.
class TagsOfTasks {
  public:
    explicit TagsOfTasks(ModelContext& context)
        : m_rows(context.statement("SELECT task, Tag.id FROM ProjectTask_Tag JOIN Tag ON Tag.key = tag "
                                   "ORDER BY task, tag")),
          m_isAtRow(m_rows->step()) {}

    void write(JsonWriter& writer, RowKey task) {
        while (m_isAtRow && m_rows->integer(0) < task)
            m_isAtRow = m_rows->step();
        if (!m_isAtRow || m_rows->integer(0) != task)
            return;
        writer.key(exportedTags);
        writer.beginArray();
        for (; m_isAtRow && m_rows->integer(0) == task; m_isAtRow = m_rows->step())
            writer.string(m_rows->uuid(1).string());
        writer.endArray();
    }

  private:
    StatementLoan m_rows;
    bool m_isAtRow;
};

void writeTable(ModelContext& context, JsonWriter& writer, const ExportTable& table) {
    std::optional<TagsOfTasks> tags;
    if (table.type == &ProjectTask::entityType())
        tags.emplace(context);
    writer.key(table.name);
    writer.beginArray();
    const StatementLoan rows = context.statement(selectFor(table));
    while (rows->step()) {
        writer.beginObject();
        writer.key("id");
        writer.string(rows->uuid(1).string());
        int column = 2;
        for (const ExportField& field : table.fields)
            writeField(writer, field, *rows, column++);
        if (tags)
            tags->write(writer, rows->integer(0));
        writer.endObject();
    }
    writer.endArray();
}

} // namespace

void exportStore(ModelContext& context, JsonWriter& writer) {
    writer.beginObject();
    writer.key("format");
    writer.string(exportFormatName);
    writer.key("version");
    writer.integer(exportFormatVersion);
    for (const ExportTable& table : exportTables())
        writeTable(context, writer, table);
    writer.endObject();
}

} // namespace quillorn
