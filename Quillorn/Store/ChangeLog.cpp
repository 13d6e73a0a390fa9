#include "Store/ChangeLog.h"

#include "Store/EntityType.h"

#include <fmt/core.h>
#include <iterator>
#include <map>
#include <string>
#include <string_view>
#include <utility>

namespace quillorn {

namespace {

/// Entries that are kept at least, and how many more there may be before the oldest go.
constexpr std::int64_t keptEntries = 4096;
constexpr std::int64_t slack = 1024;

/// Statements as SQLite keeps them: so what a file has can be compared with them.
constexpr std::string_view table =
    "CREATE TABLE ChangeLog (number INTEGER PRIMARY KEY, type TEXT NOT NULL, key INTEGER NOT NULL, kind INTEGER NOT "
    "NULL, id BLOB) STRICT";

using Kind = ChangeLog::Entry::Kind;
using Objects = std::map<std::string, std::string, std::less<>>;

std::string note(std::string_view type, std::string_view row, Kind kind) {
    return fmt::format("INSERT INTO ChangeLog (type, key, kind, id) VALUES ('{0}', {1}.key, {2}, {1}.id); ", type, row,
                       static_cast<int>(kind));
}

/// Notes the row of that key, if there is one.
std::string noteTarget(std::string_view type, const std::string& key, Kind kind) {
    return fmt::format("INSERT INTO ChangeLog (type, key, kind, id) SELECT '{0}', key, {2}, id FROM \"{0}\" WHERE key "
                       "= {1}; ",
                       type, key, static_cast<int>(kind));
}

void addTrigger(Objects& triggers, std::string_view event, const std::string& when, std::string_view on,
                const std::string& actions) {
    const std::string name = fmt::format("ChangeLog_{}_{}", on, event);
    triggers[name] = fmt::format("CREATE TRIGGER \"{}\" AFTER {} BEGIN {}END", name, when, actions);
}

/// Beside the row itself, those whose lists it enters or leaves.
void addTriggers(Objects& triggers, const EntityType& type) {
    const std::string_view name = type.name;
    std::string inserted = note(name, "NEW", Kind::inserted);
    std::string deleted = note(name, "OLD", Kind::deleted);
    for (std::size_t place = 0; place < type.columns.size(); ++place) {
        const Column& column = type.columns[place];
        if (column.target == nullptr || type.inverseOf(place) == nullptr)
            continue;
        const std::string_view target = column.target().name;
        const std::string former = noteTarget(target, fmt::format("OLD.\"{}\"", column.name), Kind::related);
        const std::string next = noteTarget(target, fmt::format("NEW.\"{}\"", column.name), Kind::related);
        inserted += next;
        deleted += former;
        addTrigger(triggers, column.name,
                   fmt::format("UPDATE OF \"{0}\" ON \"{1}\" WHEN OLD.\"{0}\" IS NOT NEW.\"{0}\"", column.name, name),
                   name, former + next);
    }
    addTrigger(triggers, "updated", fmt::format("UPDATE ON \"{}\"", name), name, note(name, "NEW", Kind::updated));
    addTrigger(triggers, "inserted", fmt::format("INSERT ON \"{}\"", name), name, inserted);
    addTrigger(triggers, "deleted", fmt::format("DELETE ON \"{}\"", name), name, deleted);
}

void addTriggers(Objects& triggers, const LinkSchema& link) {
    const auto both = [&](std::string_view row) {
        return noteTarget(link.firstTable, fmt::format("{}.\"{}\"", row, link.firstColumn), Kind::linked) +
               noteTarget(link.secondTable, fmt::format("{}.\"{}\"", row, link.secondColumn), Kind::linked);
    };
    addTrigger(triggers, "inserted", fmt::format("INSERT ON \"{}\"", link.name), link.name, both("NEW"));
    addTrigger(triggers, "deleted", fmt::format("DELETE ON \"{}\"", link.name), link.name, both("OLD"));
}

Objects wantedTriggers(const Schema& schema) {
    Objects triggers;
    for (const EntityType* type : schema.entities)
        addTriggers(triggers, *type);
    for (const LinkSchema& link : schema.links)
        addTriggers(triggers, link);
    return triggers;
}

/// Our table and triggers as the file has them.
Objects presentObjects(Database& database) {
    const StatementLoan query = database.statement("SELECT name, sql FROM sqlite_schema WHERE name = 'ChangeLog' OR "
                                                   "(type = 'trigger' AND name GLOB 'ChangeLog_*')");
    Objects objects;
    while (query->step())
        objects.emplace(query->text(0), query->text(1));
    return objects;
}

RowChange changeOf(Kind kind) {
    switch (kind) {
    case Kind::updated:
        return RowChange::updated;
    case Kind::inserted:
        return RowChange::inserted;
    case Kind::deleted:
        return RowChange::deleted;
    case Kind::related:
    case Kind::linked:
        break;
    }
    return RowChange::related;
}

} // namespace

void ChangeLog::prepare() {
    Objects wanted = m_schema.entities.empty() ? Objects{} : wantedTriggers(m_schema);
    if (wanted.empty())
        return; // a frozen schema: nobody follows such a store
    wanted.emplace("ChangeLog", table);
    const Objects present = presentObjects(m_database);
    if (present == wanted)
        return;
    Transaction transaction(m_database, Transaction::Kind::write);
    for (const auto& [name, sql] : present)
        if (name != "ChangeLog")
            m_database.execute(fmt::format("DROP TRIGGER \"{}\"", name));
    const auto log = present.find("ChangeLog");
    if (log != present.end() && log->second != table)
        m_database.execute("DROP TABLE ChangeLog");
    if (log == present.end() || log->second != table)
        m_database.execute(std::string(table));
    for (const auto& [name, sql] : wanted)
        if (name != "ChangeLog")
            m_database.execute(sql);
    transaction.commit();
}

void ChangeLog::suspend() {
    for (const auto& [name, sql] : presentObjects(m_database))
        if (name != "ChangeLog")
            m_database.execute(fmt::format("DROP TRIGGER \"{}\"", name));
}

void ChangeLog::resume() {
    for (const auto& [name, sql] : wantedTriggers(m_schema))
        m_database.execute(sql);
    // An entry of no type, and nothing before it. The numbers go on.
    m_database.execute("INSERT INTO ChangeLog (type, key, kind) VALUES ('', 0, 0)");
    m_database.execute("DELETE FROM ChangeLog WHERE number < (SELECT max(number) FROM ChangeLog)");
}

std::int64_t ChangeLog::last() {
    return m_database.integer("SELECT max(number) FROM ChangeLog");
}

std::optional<std::vector<ChangeLog::Entry>> ChangeLog::since(std::int64_t number) {
    // The entry of that number itself shows that none behind it has gone.
    const StatementLoan rows =
        m_database.statement("SELECT number, type, key, kind, id FROM ChangeLog WHERE number >= ? ORDER BY number");
    rows->bind(1, number);
    std::int64_t expected = number == 0 ? 1 : number;
    std::vector<Entry> entries;
    const auto& types = m_schema.entities;
    while (rows->step()) {
        if (rows->integer(0) != expected++)
            return std::nullopt;
        if (rows->integer(0) == number)
            continue;
        const auto type = std::ranges::find(types, rows->text(1), &EntityType::name);
        const std::int64_t kind = rows->integer(3);
        if (type == types.end() || kind < 0 || kind > static_cast<int>(Entry::Kind::linked))
            return std::nullopt;
        entries.push_back({rows->integer(0), *type, rows->integer(2), static_cast<Entry::Kind>(kind), rows->uuid(4)});
    }
    return number != 0 && expected == number ? std::nullopt : std::optional(std::move(entries));
}

void ChangeLog::shorten(std::int64_t last) {
    // In steps: a page that would have to be written each time makes a commit longer.
    const StatementLoan statement = m_database.statement("DELETE FROM ChangeLog WHERE number <= ?");
    statement->bind(1, last / slack * slack - keptEntries);
    statement->run();
}

std::vector<LoggedRow> gathered(const std::vector<ChangeLog::Entry>& entries) {
    std::vector<LoggedRow> rows;
    std::map<std::pair<const EntityType*, RowKey>, std::size_t> places;
    for (const auto& entry : entries) {
        const auto [place, isNew] = places.emplace(std::pair{entry.type, entry.key}, rows.size());
        const RowChange change = changeOf(entry.kind);
        if (isNew)
            rows.push_back({.row = {.type = entry.type, .key = entry.key, .change = change, .id = entry.id}});
        LoggedRow& row = rows[place->second];
        row.row.change = std::max(row.row.change, change);
        row.row.id = entry.id;
        row.row.isOfOthers |= entry.isOfOthers;
        row.isLinked |= entry.kind == Kind::linked && !entry.isKnown;
        row.isNews |= change != RowChange::related && !entry.isKnown;
    }
    return rows;
}

void OwnEntries::add(std::int64_t number, std::int64_t last) {
    const std::lock_guard lock(m_mutex);
    if (!m_ranges.empty() && m_ranges.back().last == number) {
        m_ranges.back().last = last;
        return;
    }
    m_ranges.push_back({number, last});
    if (m_ranges.size() > memory)
        m_ranges.pop_front();
}

void OwnEntries::takeBack(std::int64_t number) {
    const std::lock_guard lock(m_mutex);
    while (!m_ranges.empty() && m_ranges.back().before >= number)
        m_ranges.pop_back();
    if (!m_ranges.empty())
        m_ranges.back().last = std::min(m_ranges.back().last, number);
}

bool OwnEntries::contains(std::int64_t number) const {
    const std::lock_guard lock(m_mutex);
    const auto range = std::ranges::lower_bound(m_ranges, number, {}, &Range::last);
    return range != m_ranges.end() && range->before < number;
}

} // namespace quillorn
