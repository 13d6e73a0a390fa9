#pragma once

#include "Store/Database.h"

#include <atomic>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

namespace quillorn {

/// Connections to one store with their prepared statements, lent to one context at a time.
class ConnectionPool {
  public:
    /// `mayOpen` is asked before each connection is opened, and throws where there must be none.
    explicit ConnectionPool(std::string location, std::function<void()> mayOpen = {})
        : m_location(std::move(location)),
          m_mayOpen(std::move(mayOpen)) {}

    /// A connection on loan; goes back at the end.
    class Loan {
      public:
        Loan(ConnectionPool& pool, std::unique_ptr<Database> database)
            : m_pool(&pool),
              m_database(std::move(database)) {}
        Loan(Loan&&) noexcept = default;
        Loan& operator=(Loan&&) = delete;
        ~Loan();

        Database& operator*() const { return *m_database; }
        Database* operator->() const { return m_database.get(); }

      private:
        ConnectionPool* m_pool;
        std::unique_ptr<Database> m_database;
    };

    /// Takes a connection that rests, or opens one. Throws StoreError.
    Loan borrow();
    /// A connection that is the caller's own. Throws StoreError.
    std::unique_ptr<Database> open();
    /// Closes those that nobody has needed since the last call, but for one: with its statements each holds up to 1 MB.
    /// Returns how many.
    std::size_t closeUnused();
    /// Statements run so far by all connections.
    std::uint64_t executions() const { return m_executions.load(std::memory_order_relaxed); }

  private:
    void giveBack(std::unique_ptr<Database> database);

    std::string m_location;
    std::function<void()> m_mayOpen;
    std::atomic<std::uint64_t> m_executions{0};
    std::mutex m_mutex;
    std::vector<std::unique_ptr<Database>> m_resting; // the last one is taken first
    /// How many of them, from the first on, have rested since the last closeUnused().
    std::size_t m_unused = 0;
};

} // namespace quillorn
