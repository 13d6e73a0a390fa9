#pragma once

#include "Platform/Date.h"
#include "Platform/UUID.h"

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

struct sqlite3;
struct sqlite3_stmt;

namespace quillorn {

class Database;

/// A value for a parameter of a statement.
using SQLValue = std::variant<std::monostate, std::int64_t, std::string, UUID>;

/// A prepared statement of one connection. Parameters and columns are counted as SQLite does: parameters from 1,
/// columns from 0. Every operation throws StoreError when SQLite refuses it.
class Statement {
  public:
    Statement(Database& database, std::string_view sql);
    ~Statement();
    Statement(const Statement&) = delete;
    Statement& operator=(const Statement&) = delete;

    void bindNull(int index);
    void bind(int index, std::int64_t value);
    void bind(int index, std::string_view value);
    void bind(int index, const UUID& value);
    /// The value on which `row` stands in that column, whatever its type.
    void bindColumn(int index, const Statement& row, int column);
    void bindValue(int index, const SQLValue& value);
    void bindAll(const std::vector<SQLValue>& values);

    /// True when there is a row to read, false at the end.
    bool step();
    /// Runs a statement that returns no rows, and makes it ready for the next values.
    void run();
    void reset();

    bool isNull(int column) const;
    std::int64_t integer(int column) const;
    /// Valid until the next step or reset.
    std::string_view text(int column) const;
    /// The nil identifier when the column does not hold 16 bytes.
    UUID uuid(int column) const;

  private:
    void check(int result) const;

    Database& m_database;
    sqlite3_stmt* m_statement = nullptr;
    bool m_atStart = true;
};

/// A statement on loan from the connection's cache; goes back, reset, at the end.
class StatementLoan {
  public:
    StatementLoan(Statement& statement, bool& inUse) : m_statement(&statement), m_inUse(&inUse) { inUse = true; }
    explicit StatementLoan(std::unique_ptr<Statement> own) : m_statement(own.get()), m_own(std::move(own)) {}
    StatementLoan(StatementLoan&& other) noexcept
        : m_statement(std::exchange(other.m_statement, nullptr)),
          m_inUse(other.m_inUse),
          m_own(std::move(other.m_own)) {}
    StatementLoan& operator=(StatementLoan&&) = delete;
    ~StatementLoan();

    Statement* operator->() const { return m_statement; }
    Statement& operator*() const { return *m_statement; }

  private:
    Statement* m_statement;
    bool* m_inUse = nullptr;
    std::unique_ptr<Statement> m_own;
};

} // namespace quillorn
