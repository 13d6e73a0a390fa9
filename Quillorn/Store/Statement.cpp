#include "Store/Statement.h"

#include "Store/Database.h"
#include "Store/StoreError.h"

#include <cstring>
#include <sqlite3.h>

namespace quillorn {

Statement::Statement(Database& database, std::string_view sql) : m_database(database) {
    check(sqlite3_prepare_v3(database.handle(), sql.data(), static_cast<int>(sql.size()), SQLITE_PREPARE_PERSISTENT,
                             &m_statement, nullptr));
}

Statement::~Statement() {
    sqlite3_finalize(m_statement);
}

void Statement::check(int result) const {
    if (result != SQLITE_OK)
        m_database.fail(result);
}

void Statement::bindNull(int index) {
    check(sqlite3_bind_null(m_statement, index));
}

void Statement::bind(int index, std::int64_t value) {
    check(sqlite3_bind_int64(m_statement, index, value));
}

void Statement::bind(int index, std::string_view value) {
    // An empty view may hold a null pointer, which SQLite would take for NULL.
    const char* bytes = value.data() != nullptr ? value.data() : "";
    check(sqlite3_bind_text64(m_statement, index, bytes, value.size(), SQLITE_TRANSIENT, SQLITE_UTF8));
}

void Statement::bind(int index, const UUID& value) {
    check(sqlite3_bind_blob(m_statement, index, value.bytes().data(), 16, SQLITE_TRANSIENT));
}

void Statement::bindColumn(int index, const Statement& row, int column) {
    check(sqlite3_bind_value(m_statement, index, sqlite3_column_value(row.m_statement, column)));
}

void Statement::bindValue(int index, const SQLValue& value) {
    if (const auto* number = std::get_if<std::int64_t>(&value))
        bind(index, *number);
    else if (const auto* text = std::get_if<std::string>(&value))
        bind(index, std::string_view(*text));
    else if (const auto* id = std::get_if<UUID>(&value))
        bind(index, *id);
    else
        bindNull(index);
}

void Statement::bindAll(const std::vector<SQLValue>& values) {
    int index = 0;
    for (const SQLValue& value : values)
        bindValue(++index, value);
}

bool Statement::step() {
    if (m_atStart)
        m_database.countExecution();
    m_atStart = false;
    const int result = sqlite3_step(m_statement);
    if (result == SQLITE_ROW)
        return true;
    if (result != SQLITE_DONE) {
        m_database.fail(result);
    }
    return false;
}

void Statement::run() {
    while (step()) {
    }
    reset();
}

void Statement::reset() {
    // The result repeats the failure of the last step, which has been reported already.
    sqlite3_reset(m_statement);
    sqlite3_clear_bindings(m_statement);
    m_atStart = true;
}

bool Statement::isNull(int column) const {
    return sqlite3_column_type(m_statement, column) == SQLITE_NULL;
}

std::int64_t Statement::integer(int column) const {
    return sqlite3_column_int64(m_statement, column);
}

std::string_view Statement::text(int column) const {
    const auto* bytes = reinterpret_cast<const char*>(sqlite3_column_text(m_statement, column));
    if (bytes == nullptr)
        return {};
    return {bytes, static_cast<std::size_t>(sqlite3_column_bytes(m_statement, column))};
}

UUID Statement::uuid(int column) const {
    UUID::Bytes bytes{};
    const void* blob = sqlite3_column_blob(m_statement, column);
    if (blob != nullptr && sqlite3_column_bytes(m_statement, column) == 16)
        std::memcpy(bytes.data(), blob, 16);
    return UUID(bytes);
}

StatementLoan::~StatementLoan() {
    if (m_own || m_statement == nullptr)
        return;
    m_statement->reset();
    *m_inUse = false;
}

} // namespace quillorn
