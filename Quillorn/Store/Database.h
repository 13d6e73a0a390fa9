#pragma once

#include "Store/Statement.h"

#include <any>
#include <atomic>
#include <chrono>
#include <cstdint>
#include <filesystem>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <typeindex>

namespace quillorn {

/// One connection to a SQLite file, used by one thread at a time. It never checkpoints by itself, neither after a
/// commit nor on closing: see WriteLock for why.
class Database {
  public:
    /// Opens an existing or new file at `location`, a path or a "file:" URI. `executions` is counted up for every
    /// statement run. Nothing is read or written yet. Throws StoreError.
    Database(const std::string& location, std::atomic<std::uint64_t>& executions);
    ~Database();
    Database(const Database&) = delete;
    Database& operator=(const Database&) = delete;

    /// The rules by which every connection of ours works: foreign keys, durability, memory.
    void configure();

    StatementLoan statement(std::string_view sql);
    /// Runs one or more statements without parameters or results.
    void execute(const std::string& sql);
    /// The first column of the first row of a query without parameters; 0 without a row.
    std::int64_t integer(std::string_view sql);

    /// What was worked out of the records that this connection sees, kept for as long as it sees the same: made anew,
    /// empty, after every commit by whomever. There is one of each type.
    template <class Value>
    Value& derived() {
        forgetOutdated();
        std::any& place = m_derived[typeid(Value)];
        if (!place.has_value())
            place = Value{};
        return *std::any_cast<Value>(&place);
    }

    /// The highest key that the table has ever given; 0 when it has given none.
    std::int64_t lastKey(std::string_view table);

    /// Opens a write transaction; waits up to `patience`, within bounds, for a program that holds SQLite's own lock.
    void beginWriting(std::chrono::milliseconds patience);
    bool inTransaction() const;
    /// Rolls back if a transaction is open; never throws.
    void rollBack() noexcept;

    /// Number of rows that the last statement changed by itself, without cascades.
    std::int64_t changes() const;
    /// Pages in the write-ahead log after this connection's last commit.
    int logPages() const { return m_logPages; }
    /// Moves what readers allow of the write-ahead log into the file. The caller holds the write lock. A failure
    /// does no harm, since the log keeps everything, and is not reported.
    void checkpoint(bool truncateLog) noexcept;

    /// Whether its path leads to another file than the one that is open, or to none.
    bool hasMoved() const;

    sqlite3* handle() const { return m_handle; }
    void countExecution() { m_executions.fetch_add(1, std::memory_order_relaxed); }
    /// Throws StoreError in the words of the connection's last failure.
    [[noreturn]] void fail(int result) const;

  private:
    struct Cached {
        std::unique_ptr<Statement> statement;
        bool inUse = false;
    };

    /// Of the records as this connection sees them: the commits of others that it knows, the rows it changed itself.
    struct Sight {
        std::int64_t commits;
        std::int64_t changes;

        friend bool operator==(const Sight&, const Sight&) = default;
    };

    void forgetOutdated();

    std::string m_location;
    sqlite3* m_handle = nullptr;
    std::atomic<std::uint64_t>& m_executions;
    std::map<std::string, Cached, std::less<>> m_statements;
    std::optional<Sight> m_derivedFrom;
    std::map<std::type_index, std::any> m_derived;
    int m_logPages = 0;
};

/// A transaction that rolls back unless it was committed.
class Transaction {
  public:
    enum class Kind { read, write };

    Transaction(Database& database, Kind kind);
    ~Transaction() {
        if (!m_done)
            m_database.rollBack();
    }
    Transaction(const Transaction&) = delete;
    Transaction& operator=(const Transaction&) = delete;

    void commit();

  private:
    Database& m_database;
    bool m_done = false;
};

} // namespace quillorn
