#include "Services/StoreImport.h"

#include "Models/ProjectTask.h"
#include "Models/Tag.h"
#include "Platform/JsonPieces.h"
#include "Services/ExportFormat.h"
#include "Store/BulkWrite.h"
#include "Store/EntityType.h"
#include "Store/ModelContext.h"

#include <algorithm>
#include <fmt/core.h>
#include <map>
#include <optional>
#include <unordered_map>
#include <unordered_set>

namespace quillorn {

namespace {

using Kind = ExportField::Kind;
constexpr int deepest = 8; // a record has no more than a list within it

/// The file's members by their names, with the text of their values.
struct Sections {
    std::map<std::string, std::string_view, std::less<>> values;
    /// One that the format doesn't know.
    std::optional<std::string> unknown;

    Json valueOf(std::string_view name) const {
        const auto found = values.find(name);
        return found != values.end() ? Json::parse(found->second, deepest) : Json();
    }
};

Sections sectionsOf(std::string_view text) {
    Sections sections;
    for (const JsonMember& member : jsonMembers(text)) {
        if (!sections.values.emplace(member.key, member.value).second)
            throw ImportError(fmt::format("\"{}\" is there twice", member.key));
        if (member.key != "format" && member.key != "version" &&
            std::ranges::count(exportTables(), member.key, &ExportTable::name) == 0)
            sections.unknown = member.key;
    }
    return sections;
}

void checkVersion(const Sections& sections) {
    if (sections.valueOf("format") != Json(exportFormatName))
        throw ImportError(fmt::format("this is no export: \"format\" is not \"{}\"", exportFormatName));
    const Json version = sections.valueOf("version");
    if (version.asInteger() == nullptr || *version.asInteger() < 1)
        throw ImportError("\"version\" is no version");
    if (*version.asInteger() > exportFormatVersion)
        throw ImportError(fmt::format("the export has version {}; this program reads up to version {}",
                                      *version.asInteger(), exportFormatVersion));
    if (sections.unknown) // a newer version might have it
        throw ImportError(fmt::format("there is no \"{}\" in an export", *sections.unknown));
}

/// Takes up the records of one table.
class TableImport {
  public:
    TableImport(ModelContext& context, const ExportTable& table)
        : m_context(context),
          m_table(table),
          m_lastKey(readLastKey()) {}

    std::int64_t run(std::string_view section) {
        try {
            forEachJsonElement(section, [&](std::string_view element) {
                add(Json::parse(element, deepest));
                ++m_count;
            });
        } catch (const JsonError& error) {
            fail(error.what());
        }
        linkParents();
        return m_count;
    }

  private:
    [[noreturn]] void fail(std::string_view reason) const {
        throw ImportError(fmt::format("{}[{}]: {}", m_table.name, m_count, reason));
    }

    RowKey readLastKey() const {
        const StatementLoan row =
            m_context.statement("SELECT coalesce(max(seq), 0) FROM sqlite_sequence WHERE name = ?");
        row->bind(1, m_table.type->name);
        return row->step() ? row->integer(0) : 0;
    }

    std::optional<RowKey> keyOf(const EntityType& type, const UUID& id) const {
        const StatementLoan row =
            m_context.statement(fmt::format("SELECT key FROM \"{}\" WHERE id = ? ORDER BY key LIMIT 1", type.name));
        row->bind(1, id);
        return row->step() ? std::optional(row->integer(0)) : std::nullopt;
    }

    UUID idOf(const Json& value, std::string_view name) const {
        const auto id = value.asString() != nullptr ? UUID::parse(*value.asString()) : std::nullopt;
        if (!id)
            fail(fmt::format("{} is no id", name));
        return *id;
    }

    RowKey target(const EntityType& type, const Json& value, std::string_view name) const {
        const UUID id = idOf(value, name);
        const auto key = keyOf(type, id);
        if (!key)
            fail(fmt::format("{} {} leads nowhere", name, id.string()));
        return *key;
    }

    bool isParent(const ExportField& field) const {
        return field.kind == Kind::reference && &field.column->target() == m_table.type;
    }

    void add(const Json& record) {
        if (record.asObject() == nullptr)
            fail("this is no object");
        checkMembers(*record.asObject());
        const Json* idValue = record.find("id");
        if (idValue == nullptr)
            fail("id is missing");
        const UUID id = idOf(*idValue, "id");
        if (keyOf(*m_table.type, id))
            fail(fmt::format("the id {} is there already", id.string()));
        const RowKey key = ++m_lastKey;
        const StatementLoan insertion = m_context.statement(m_table.type->insert);
        insertion->bind(1, key);
        insertion->bind(2, id);
        int parameter = 3;
        for (const ExportField& field : m_table.fields)
            bind(*insertion, parameter++, field, record.find(field.name), key);
        insertion->run();
        if (const Json* tags = record.find(exportedTags))
            addTags(key, *tags);
    }

    void checkMembers(const Json::Object& record) const {
        for (const auto& [name, value] : record) {
            const bool isTags = name == exportedTags && m_table.type == &ProjectTask::entityType();
            if (name != "id" && !isTags && std::ranges::count(m_table.fields, name, &ExportField::name) == 0)
                fail(fmt::format("there is no field \"{}\"", name));
        }
    }

    void bind(Statement& insertion, int parameter, const ExportField& field, const Json* value, RowKey key) {
        if (value == nullptr && field.isRequired)
            fail(fmt::format("{} is missing", field.name));
        if (value == nullptr)
            return insertion.bindNull(parameter);
        if (isParent(field)) { // which may come later
            m_parents.emplace_back(key, idOf(*value, field.name));
            return insertion.bindNull(parameter);
        }
        if (field.kind == Kind::reference)
            return insertion.bind(parameter, target(field.column->target(), *value, field.name));
        if (field.kind == Kind::id)
            return insertion.bind(parameter, idOf(*value, field.name));
        if (field.kind == Kind::text && value->asString() != nullptr)
            return insertion.bind(parameter, std::string_view(*value->asString()));
        insertion.bind(parameter, integerOf(field, *value));
    }

    std::int64_t integerOf(const ExportField& field, const Json& value) const {
        if (field.kind == Kind::flag && value.asBool() != nullptr)
            return *value.asBool() ? 1 : 0;
        if (field.kind == Kind::date && value.asString() != nullptr)
            if (const auto date = parseExportedDate(*value.asString()))
                return date->time_since_epoch().count();
        if (field.kind == Kind::number && value.asInteger() != nullptr &&
            (field.most < 0 || (*value.asInteger() >= 0 && *value.asInteger() <= field.most)))
            return *value.asInteger();
        fail(fmt::format("{} has a value that it can't have", field.name));
    }

    void addTags(RowKey task, const Json& tags) {
        if (tags.asArray() == nullptr)
            fail(fmt::format("{} is no list", exportedTags));
        for (const Json& each : *tags.asArray()) {
            const StatementLoan link =
                m_context.statement("INSERT OR IGNORE INTO ProjectTask_Tag (task, tag) VALUES (?, ?)");
            link->bind(1, task);
            link->bind(2, target(Tag::entityType(), each, exportedTags));
            link->run();
        }
    }

    void linkParents() {
        const auto field =
            std::ranges::find_if(m_table.fields, [&](const ExportField& each) { return isParent(each); });
        if (field == m_table.fields.end())
            return;
        const std::string sql =
            fmt::format("UPDATE \"{}\" SET \"{}\" = ? WHERE key = ?", m_table.type->name, field->column->name);
        std::unordered_map<RowKey, RowKey> parents;
        for (const auto& [child, id] : m_parents) {
            const auto parent = keyOf(*m_table.type, id);
            if (!parent)
                throw ImportError(fmt::format("{}: {} {} leads nowhere", m_table.name, field->name, id.string()));
            const StatementLoan update = m_context.statement(sql);
            update->bind(1, *parent);
            update->bind(2, child);
            update->run();
            parents[child] = *parent;
        }
        checkCircles(parents);
    }

    /// None of the records that were there before has a parent among the new ones.
    void checkCircles(const std::unordered_map<RowKey, RowKey>& parents) const {
        std::unordered_set<RowKey> sound;
        for (const auto& [child, parent] : parents) {
            std::unordered_set<RowKey> path;
            for (auto place = parents.find(child); place != parents.end() && !sound.contains(place->first);
                 place = parents.find(place->second))
                if (!path.insert(place->first).second)
                    throw ImportError(fmt::format("{}: one is its own ancestor", m_table.name));
            sound.merge(path);
        }
    }

    ModelContext& m_context;
    const ExportTable& m_table;
    RowKey m_lastKey;
    std::int64_t m_count = 0;
    std::vector<std::pair<RowKey, UUID>> m_parents; // keys of records, and the ids above them
};

} // namespace

ImportCounts importIntoStore(ModelContainer& container, std::string_view text, ImportKind kind) {
    ImportCounts counts;
    try {
        const Sections sections = sectionsOf(text);
        checkVersion(sections);
        writeInBulk(container, [&](ModelContext& context) {
            for (const ExportTable& table : exportTables()) {
                const auto section = sections.values.find(table.name);
                const bool isThere = section != sections.values.end();
                counts.emplace_back(table.name, isThere ? TableImport(context, table).run(section->second) : 0);
            }
            return kind == ImportKind::real;
        });
    } catch (const JsonError& error) {
        throw ImportError(error.what());
    }
    return counts;
}

} // namespace quillorn
