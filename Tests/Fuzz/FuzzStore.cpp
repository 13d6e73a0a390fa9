#include "Fuzz/FuzzStore.h"

#include "Fuzz/Harness.h"
#include "Store/ReplaceContents.h"

#include <fmt/format.h>
#include <vector>

namespace quillorn {

namespace {

/// The first column of all rows, one a line.
std::string rowsOf(ModelContext& context, const std::string& query) {
    std::string rows;
    const StatementLoan statement = context.statement(query);
    while (statement->step())
        rows.append(statement->text(0)) += '\n';
    return rows;
}

/// One query for each table, whose rows are texts of all columns. Not for the log of changes, whose numbers go on when
/// the records of the beginning are brought back.
std::vector<std::string> contentQueries(ModelContext& context) {
    std::vector<std::string> queries;
    const StatementLoan tables =
        context.statement("SELECT name FROM sqlite_master WHERE type = 'table' AND name <> 'ChangeLog' ORDER BY name");
    while (tables->step()) {
        const std::string table(tables->text(0));
        const std::string columns =
            rowsOf(context, fmt::format("SELECT group_concat('quote(\"' || name || '\")', ' || '','' || ') "
                                        "FROM pragma_table_info('{}')",
                                        table));
        queries.push_back(fmt::format("SELECT {} FROM \"{}\" ORDER BY 1", columns, table));
    }
    return queries;
}

} // namespace

FuzzStore::FuzzStore() : m_original(m_ofOriginal.open(std::nullopt)), m_container(open(std::nullopt)) {
    {
        ModelContext context(*m_original, ModelContext::Intent::update);
        m_ids = crowd(context, 2);
    }
    reset();
}

void FuzzStore::reset() {
    {
        ModelContext context(*m_container, ModelContext::Intent::update);
        context.statement("DELETE FROM sqlite_sequence")->run();
        context.statement("COMMIT")->run(); // save() knows of no change
    }
    replaceStoreContents(*m_original, *m_container);
    random.restart();
}

std::string FuzzStore::content() const {
    ModelContext context(*m_container);
    static const std::vector<std::string> queries = contentQueries(context);
    std::string content;
    for (const std::string& query : queries)
        content += rowsOf(context, query);
    return content;
}

void FuzzStore::requireSound() const {
    ModelContext context(*m_container);
    const std::string faults = rowsOf(context, "PRAGMA integrity_check");
    require(faults == "ok\n", faults);
    require(rowsOf(context, "PRAGMA foreign_key_check").empty(), "a reference leads nowhere");
}

} // namespace quillorn
