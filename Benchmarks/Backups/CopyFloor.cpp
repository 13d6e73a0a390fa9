// What copying a store into a new file costs at least: every row of every table through SQLite's C interface, in one
// transaction. It shares no code with the program, and takes tables and indexes as it finds them.

#include "Stopwatch.h"

#include <fmt/core.h>
#include <sqlite3.h>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

void check(int result, sqlite3* database) {
    if (result != SQLITE_OK && result != SQLITE_ROW && result != SQLITE_DONE)
        throw std::runtime_error(sqlite3_errmsg(database));
}

sqlite3* opened(const char* file, int flags) {
    sqlite3* database = nullptr;
    check(sqlite3_open_v2(file, &database, flags | SQLITE_OPEN_NOMUTEX, nullptr), database);
    return database;
}

void execute(sqlite3* database, const std::string& sql) {
    check(sqlite3_exec(database, sql.c_str(), nullptr, nullptr, nullptr), database);
}

sqlite3_stmt* prepared(sqlite3* database, const std::string& sql) {
    sqlite3_stmt* statement = nullptr;
    check(sqlite3_prepare_v2(database, sql.c_str(), -1, &statement, nullptr), database);
    return statement;
}

std::vector<std::string> texts(sqlite3* database, const std::string& sql) {
    std::vector<std::string> found;
    sqlite3_stmt* query = prepared(database, sql);
    while (sqlite3_step(query) == SQLITE_ROW)
        found.emplace_back(reinterpret_cast<const char*>(sqlite3_column_text(query, 0)));
    sqlite3_finalize(query);
    return found;
}

void copyTable(sqlite3* source, sqlite3* target, const std::string& table) {
    sqlite3_stmt* rows = prepared(source, "SELECT * FROM \"" + table + "\"");
    const int columns = sqlite3_column_count(rows);
    std::string insert = "INSERT INTO \"" + table + "\" VALUES (?";
    for (int column = 1; column < columns; ++column)
        insert += ", ?";
    sqlite3_stmt* copies = prepared(target, insert + ")");
    int result = SQLITE_ROW;
    while ((result = sqlite3_step(rows)) == SQLITE_ROW) {
        for (int column = 0; column < columns; ++column)
            sqlite3_bind_value(copies, column + 1, sqlite3_column_value(rows, column));
        check(sqlite3_step(copies), target);
        sqlite3_reset(copies);
    }
    check(result, source);
    sqlite3_finalize(rows);
    sqlite3_finalize(copies);
}

void copy(const char* from, const char* to) {
    sqlite3* source = opened(from, SQLITE_OPEN_READONLY);
    sqlite3* target = opened(to, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE);
    execute(target, "PRAGMA journal_mode = WAL; PRAGMA synchronous = FULL; BEGIN");
    for (const auto& sql : texts(source, "SELECT sql FROM sqlite_schema WHERE sql NOT NULL AND name <> "
                                         "'sqlite_sequence' ORDER BY type DESC")) // tables before indexes
        execute(target, sql);
    for (const auto& table : texts(source, "SELECT name FROM sqlite_schema WHERE type = 'table' AND name <> "
                                           "'sqlite_sequence'"))
        copyTable(source, target, table);
    execute(target, "COMMIT");
    sqlite3_close(target);
    sqlite3_close(source);
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 3)
        return fmt::print(stderr, "usage: quillorn-copy-floor STORE NEW_FILE\n"), 2;
    try {
        Stopwatch stopwatch;
        copy(argv[1], argv[2]);
        const auto lap = stopwatch.lap();
        fmt::print("{{\"milliseconds\":{:.1f},\"cpu\":{:.1f}}}\n", lap.wall, lap.cpu);
    } catch (const std::exception& error) {
        fmt::print(stderr, "{}\n", error.what());
        return 1;
    }
    return 0;
}
