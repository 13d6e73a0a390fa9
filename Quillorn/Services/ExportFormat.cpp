#include "Services/ExportFormat.h"

#include "Models/ChatMessage.h"
#include "Models/Client.h"
#include "Models/Note.h"
#include "Models/Project.h"
#include "Models/ProjectDivider.h"
#include "Models/ProjectTask.h"
#include "Models/Tag.h"
#include "Models/TimeEntry.h"
#include "Store/EntityType.h"

#include <algorithm>
#include <fmt/core.h>
#include <stdexcept>

namespace quillorn {

namespace {

using Kind = ExportField::Kind;

/// What the integers of the store mean.
struct IntegerColumn {
    std::string_view name;
    Kind kind;
    std::int64_t most = -1;
};
constexpr IntegerColumn integerColumns[] = {
    {"createdAt", Kind::date},
    {"updatedAt", Kind::date},
    {"completedAt", Kind::date},
    {"dueDate", Kind::date},
    {"startTime", Kind::date},
    {"endTime", Kind::date},
    {"isArchived", Kind::flag},
    {"dueHasTime", Kind::flag},
    {"isPinned", Kind::flag},
    {"sortOrder", Kind::number},
    {"priority", Kind::number, EnumCases<TaskPriority>::count - 1},
    {"status", Kind::number, EnumCases<TaskStatus>::count - 1},
    {"role", Kind::number, EnumCases<ChatRole>::count - 1},
};

ExportField fieldOf(const Column& column) {
    const std::string name(column.name);
    if (column.target != nullptr)
        return {name + "Id", Kind::reference, false, -1, &column};
    if (column.storage == StorageType::text)
        return {name, Kind::text, column.required, -1, &column};
    if (column.storage == StorageType::blob)
        return {name, Kind::id, column.required, -1, &column};
    const auto* known = std::ranges::find(integerColumns, column.name, &IntegerColumn::name);
    if (known == std::end(integerColumns))
        throw std::logic_error(fmt::format("nothing says how {} is exported", name));
    return {name, known->kind, column.required, known->most, &column};
}

ExportTable table(std::string_view name, const EntityType& type) {
    ExportTable result{name, &type, {}};
    for (const Column& column : type.columns)
        result.fields.push_back(fieldOf(column));
    return result;
}

constexpr std::string_view idPattern = "^[0-9A-Fa-f]{8}(-[0-9A-Fa-f]{4}){3}-[0-9A-Fa-f]{12}$";
constexpr std::string_view datePattern =
    "^[0-9]{4}-[0-9]{2}-[0-9]{2}T[0-9]{2}:[0-9]{2}:[0-9]{2}([.][0-9]{1,6})?(Z|[+-][0-9]{2}:[0-9]{2})$";

Json reference(std::string_view definition) {
    return Json::Object{{"$ref", fmt::format("#/$defs/{}", definition)}};
}

Json schemaOf(const ExportField& field) {
    switch (field.kind) {
    case Kind::text:
        return Json::Object{{"type", "string"}};
    case Kind::flag:
        return Json::Object{{"type", "boolean"}};
    case Kind::date:
        return reference("date");
    case Kind::id:
    case Kind::reference:
        return reference("id");
    case Kind::number:
        break;
    }
    Json::Object number{{"type", "integer"}};
    if (field.most >= 0) {
        number.emplace("minimum", 0);
        number.emplace("maximum", field.most);
    }
    return number;
}

Json schemaOf(const ExportTable& table) {
    Json::Object properties{{"id", reference("id")}};
    Json::Array required{"id"};
    for (const ExportField& field : table.fields) {
        properties.emplace(field.name, schemaOf(field));
        if (field.isRequired)
            required.emplace_back(field.name);
    }
    if (table.type == &ProjectTask::entityType())
        properties.emplace(exportedTags,
                           Json::Object{{"type", "array"}, {"items", reference("id")}, {"uniqueItems", true}});
    const Json record = Json::Object{{"type", "object"},
                                     {"properties", std::move(properties)},
                                     {"required", std::move(required)},
                                     {"additionalProperties", false}};
    return Json::Object{{"type", "array"}, {"items", record}};
}

} // namespace

const std::vector<ExportTable>& exportTables() {
    static const std::vector<ExportTable> tables = {
        table("clients", Client::entityType()),    table("groups", ProjectDivider::entityType()),
        table("projects", Project::entityType()),  table("tags", Tag::entityType()),
        table("tasks", ProjectTask::entityType()), table("timeEntries", TimeEntry::entityType()),
        table("notes", Note::entityType()),        table("chatMessages", ChatMessage::entityType()),
    };
    return tables;
}

std::string exportedDate(Date date) {
    const auto second = std::chrono::floor<std::chrono::seconds>(date);
    std::string text = formatISO8601(date);
    text.insert(text.size() - 1, fmt::format(".{:06}", (date - second).count()));
    return text;
}

std::optional<Date> parseExportedDate(std::string_view text) {
    const std::size_t point = text.find('.');
    if (point == std::string_view::npos)
        return parseISO8601(text);
    const std::size_t end = std::min(text.find_first_not_of("0123456789", point + 1), text.size());
    const std::string_view digits = text.substr(point + 1, end - point - 1);
    if (digits.empty() || digits.size() > 6)
        return std::nullopt;
    const auto whole = parseISO8601(std::string(text.substr(0, point)) + std::string(text.substr(end)));
    const std::string microseconds = fmt::format("{:0<6}", digits);
    return whole ? std::optional(*whole + std::chrono::microseconds{std::stoi(microseconds)}) : std::nullopt;
}

Json exportSchema() {
    Json::Object properties{{"format", Json::Object{{"const", exportFormatName}}},
                            {"version", Json::Object{{"const", exportFormatVersion}}}};
    for (const ExportTable& each : exportTables())
        properties.emplace(each.name, schemaOf(each));
    const auto text = [](std::string_view pattern) { return Json::Object{{"type", "string"}, {"pattern", pattern}}; };
    return Json::Object{{"$schema", "https://json-schema.org/draft/2020-12/schema"},
                        {"title", "All that a store of Quillorn holds"},
                        {"type", "object"},
                        {"properties", std::move(properties)},
                        {"required", Json::Array{"format", "version"}},
                        {"additionalProperties", false},
                        {"$defs", Json::Object{{"id", text(idPattern)}, {"date", text(datePattern)}}}};
}

} // namespace quillorn
