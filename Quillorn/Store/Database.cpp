#include "Store/Database.h"

#include "Store/StoreError.h"

#include <algorithm>
#include <fmt/core.h>
#include <sqlite3.h>

namespace quillorn {

namespace {

/// How long a connection waits for a lock of SQLite's own. Writers queue at WriteLock before; this is for the short
/// moments of recovery and checkpoints.
constexpr int busyMilliseconds = 5000;

/// Without its count of the memory in use SQLite needs no lock between connections when it allocates. Too late, and
/// without effect, once SQLite was used.
void leaveMemoryUncounted() {
    [[maybe_unused]] static const int result = sqlite3_config(SQLITE_CONFIG_MEMSTATUS, 0);
}

} // namespace

Database::Database(const std::string& location, std::atomic<std::uint64_t>& executions)
    : m_location(location),
      m_executions(executions) {
    leaveMemoryUncounted();
    // No mutex of SQLite's: a connection belongs to one context, and a context to one thread.
    const int flags =
        SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE | SQLITE_OPEN_NOMUTEX | SQLITE_OPEN_URI | SQLITE_OPEN_EXRESCODE;
    const int result = sqlite3_open_v2(location.c_str(), &m_handle, flags, nullptr);
    if (result != SQLITE_OK) {
        const std::string reason = m_handle != nullptr ? sqlite3_errmsg(m_handle) : "out of memory";
        sqlite3_close_v2(m_handle);
        throw StoreError(fmt::format("Can't open the store {}: {}", m_location, reason), result);
    }
    sqlite3_busy_timeout(m_handle, busyMilliseconds);
    sqlite3_db_config(m_handle, SQLITE_DBCONFIG_NO_CKPT_ON_CLOSE, 1, nullptr);
    sqlite3_db_config(m_handle, SQLITE_DBCONFIG_DEFENSIVE, 1, nullptr);
    sqlite3_db_config(m_handle, SQLITE_DBCONFIG_TRUSTED_SCHEMA, 0, nullptr);
    // Otherwise the quoted name of a column that is missing passes for a text.
    sqlite3_db_config(m_handle, SQLITE_DBCONFIG_DQS_DML, 0, nullptr);
    sqlite3_db_config(m_handle, SQLITE_DBCONFIG_DQS_DDL, 0, nullptr);
    // Replaces the automatic checkpoint, which would run on whichever connection commits.
    sqlite3_wal_hook(
        m_handle,
        [](void* self, sqlite3*, const char*, int pages) {
            static_cast<Database*>(self)->m_logPages = pages;
            return SQLITE_OK;
        },
        this);
}

Database::~Database() {
    m_statements.clear();
    sqlite3_close_v2(m_handle);
}

void Database::configure() {
    execute("PRAGMA foreign_keys = ON;"
            "PRAGMA synchronous = FULL;"
            "PRAGMA mmap_size = 0;"
            "PRAGMA temp_store = MEMORY;"
            "PRAGMA cache_size = -1000;");
}

StatementLoan Database::statement(std::string_view sql) {
    auto found = m_statements.find(sql);
    if (found == m_statements.end()) {
        auto statement = std::make_unique<Statement>(*this, sql);
        found = m_statements.emplace(std::string(sql), Cached{std::move(statement), false}).first;
    } else if (found->second.inUse) {
        return StatementLoan(std::make_unique<Statement>(*this, sql));
    }
    return {*found->second.statement, found->second.inUse};
}

void Database::execute(const std::string& sql) {
    countExecution();
    const int result = sqlite3_exec(m_handle, sql.c_str(), nullptr, nullptr, nullptr);
    if (result != SQLITE_OK)
        fail(result);
}

std::int64_t Database::integer(std::string_view sql) {
    const StatementLoan query = statement(sql);
    return query->step() ? query->integer(0) : 0;
}

void Database::forgetOutdated() {
    const Sight now{integer("PRAGMA data_version"), sqlite3_total_changes64(m_handle)};
    // What is written and not committed may be taken back, and leaves no sign when it is.
    const bool isWriting = sqlite3_txn_state(m_handle, nullptr) == SQLITE_TXN_WRITE;
    if (isWriting || m_derivedFrom != now)
        m_derived.clear();
    m_derivedFrom = isWriting ? std::nullopt : std::optional(now);
}

std::int64_t Database::lastKey(std::string_view table) {
    const StatementLoan query = statement("SELECT coalesce(max(seq), 0) FROM sqlite_sequence WHERE name = ?");
    query->bind(1, table);
    return query->step() ? query->integer(0) : 0;
}

void Database::beginWriting(std::chrono::milliseconds patience) {
    sqlite3_busy_timeout(m_handle, static_cast<int>(std::clamp<std::int64_t>(patience.count(), 0, busyMilliseconds)));
    try {
        statement("BEGIN IMMEDIATE")->run();
    } catch (...) {
        sqlite3_busy_timeout(m_handle, busyMilliseconds);
        throw;
    }
    sqlite3_busy_timeout(m_handle, busyMilliseconds);
}

bool Database::inTransaction() const {
    return sqlite3_get_autocommit(m_handle) == 0;
}

void Database::rollBack() noexcept {
    if (inTransaction())
        sqlite3_exec(m_handle, "ROLLBACK", nullptr, nullptr, nullptr);
}

std::int64_t Database::changes() const {
    return sqlite3_changes64(m_handle);
}

void Database::checkpoint(bool truncateLog) noexcept {
    const int mode = truncateLog ? SQLITE_CHECKPOINT_TRUNCATE : SQLITE_CHECKPOINT_PASSIVE;
    // Readers are not waited for: every writer would wait with us, and a later checkpoint does as well.
    sqlite3_busy_timeout(m_handle, 0);
    sqlite3_wal_checkpoint_v2(m_handle, nullptr, mode, nullptr, nullptr);
    sqlite3_busy_timeout(m_handle, busyMilliseconds);
}

bool Database::hasMoved() const {
    int moved = 0;
    return sqlite3_file_control(m_handle, "main", SQLITE_FCNTL_HAS_MOVED, &moved) == SQLITE_OK && moved != 0;
}

void Database::fail(int result) const {
    const std::string words = sqlite3_errmsg(m_handle);
    const std::string kind = sqlite3_errstr(result);
    const std::string message = words == kind ? words : fmt::format("{} ({})", words, kind);
    if ((result & 0xff) == SQLITE_BUSY)
        throw StoreBusyError(message, result);
    throw StoreError(message, result);
}

Transaction::Transaction(Database& database, Kind kind) : m_database(database) {
    m_database.statement(kind == Kind::write ? "BEGIN IMMEDIATE" : "BEGIN")->run();
}

void Transaction::commit() {
    m_database.statement("COMMIT")->run();
    m_done = true;
}

} // namespace quillorn
