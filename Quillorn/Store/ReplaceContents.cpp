#include "Store/ReplaceContents.h"

#include "Store/ModelContext.h"
#include "Store/StoreError.h"

#include <fmt/core.h>
#include <map>
#include <string>
#include <string_view>

namespace quillorn {

namespace {

/// Copies rows straight from one connection to another, so that it needs the memory of one row.
class ContentCopy {
  public:
    /// Works in the snapshot of `source` and in the write transaction of `live`.
    ContentCopy(ModelContext& source, Database& live, const Schema& schema)
        : m_source(source),
          m_live(live),
          m_schema(schema) {}

    void run() {
        for (const EntityType* type : m_schema.entities)
            m_shifts[type->name] = shiftOf(type->name);
        removeEverything();
        for (const EntityType* type : m_schema.entities)
            copyRows(selectShifted(*type), type->insert, 2 + static_cast<int>(type->columns.size()));
        for (const LinkSchema& link : m_schema.links)
            copyLinks(link);
    }

  private:
    /// What is added to a table's keys: the first copy gets the first key that `live` has not given yet. Counted from
    /// the lowest key of the source, for otherwise keys would double whenever a store gets its own backup back.
    RowKey shiftOf(std::string_view table) {
        const StatementLoan keys = m_source.statement(fmt::format("SELECT min(key), max(key) FROM \"{}\"", table));
        if (!keys->step() || keys->isNull(0))
            return 0;
        const RowKey lowest = keys->integer(0);
        const RowKey last = m_live.lastKey(table);
        // Damage alone makes such keys. They would leave none for new rows, or be too large to calculate with.
        if (lowest < 1 || keys->integer(1) - lowest >= highestKey - last)
            throw StoreError(fmt::format("The row keys of {} are out of range", table));
        return last + 1 - lowest;
    }

    void removeEverything() {
        for (const LinkSchema& link : m_schema.links)
            m_live.execute(fmt::format("DELETE FROM \"{}\"", link.name));
        for (const EntityType* type : m_schema.entities)
            m_live.execute(fmt::format("DELETE FROM \"{}\"", type->name));
    }

    /// The source's rows, in the order of EntityType::insert, with the keys that they and their targets get.
    std::string selectShifted(const EntityType& type) const {
        std::string columns = fmt::format("t.key + {}, t.id", m_shifts.at(type.name));
        for (const Column& column : type.columns) {
            if (column.target == nullptr) {
                columns += fmt::format(", t.\"{}\"", column.name);
                continue;
            }
            const std::string_view target = column.target().name;
            columns += fmt::format(", (SELECT key + {} FROM \"{}\" WHERE key = t.\"{}\")", m_shifts.at(target), target,
                                   column.name);
        }
        return fmt::format("SELECT {} FROM \"{}\" t ORDER BY t.key", columns, type.name);
    }

    void copyLinks(const LinkSchema& link) {
        const std::string select =
            fmt::format("SELECT a.key + {}, b.key + {} FROM \"{}\" l JOIN \"{}\" a ON a.key = l.\"{}\" "
                        "JOIN \"{}\" b ON b.key = l.\"{}\"",
                        m_shifts.at(link.firstTable), m_shifts.at(link.secondTable), link.name, link.firstTable,
                        link.firstColumn, link.secondTable, link.secondColumn);
        copyRows(select,
                 fmt::format("INSERT INTO \"{}\" (\"{}\", \"{}\") VALUES (?, ?)", link.name, link.firstColumn,
                             link.secondColumn),
                 2);
    }

    void copyRows(const std::string& select, const std::string& insert, int columns) {
        const StatementLoan rows = m_source.statement(select);
        const StatementLoan copies = m_live.statement(insert);
        while (rows->step()) {
            for (int column = 0; column < columns; ++column)
                copies->bindColumn(column + 1, *rows, column);
            copies->run();
        }
    }

    static constexpr RowKey highestKey = RowKey{1} << 62;

    ModelContext& m_source;
    Database& m_live;
    const Schema& m_schema;
    std::map<std::string_view, RowKey> m_shifts; // by table
};

} // namespace

void replaceStoreContents(ModelContainer& source, ModelContainer& live) {
    // Frozen schemas know no entities.
    if (&source.schema() != &live.schema() || live.schema().entities.empty())
        throw StoreError(fmt::format("Can't copy a store of schema version {} into one of version {}",
                                     source.schema().version, live.schema().version));
    ModelContext reading(source);
    {
        const WriteLock::Guard guard = live.lockForWriting();
        const auto database = live.m_pool.open();
        live.checkFiles(database.get());
        // The copy makes no reference without its target. Unwatched, tables are emptied at once instead of row by row.
        database->execute("PRAGMA foreign_keys = OFF");
        Transaction transaction(*database, Transaction::Kind::write);
        ChangeLog log(*database, live.schema());
        log.suspend(); // it would hold every row twice
        ContentCopy(reading, *database, live.schema()).run();
        log.resume();
        transaction.commit();
        live.checkpointIfDue(*database);
    }
    live.publish();
}

} // namespace quillorn
