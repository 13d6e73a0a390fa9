#pragma once

#include "Store/ChangeSet.h"
#include "Store/Database.h"
#include "Store/Schema.h"

#include <cstdint>
#include <deque>
#include <mutex>
#include <optional>
#include <vector>

namespace quillorn {

/// The table in which the store itself notes each row that is written, by triggers: so it holds what every process has
/// done, in the transaction that did it. Numbered without gaps; kept short, so old entries go.
class ChangeLog {
  public:
    struct Entry {
        enum class Kind { related, updated, inserted, deleted, linked };

        std::int64_t number = 0;
        const EntityType* type = nullptr;
        RowKey key = 0;
        Kind kind = Kind::related;
        UUID id{};
        /// For who asks to fill in: whether another process has made it, and whether he has made it himself.
        bool isOfOthers = false;
        bool isKnown = false;
    };

    ChangeLog(Database& database, const Schema& schema) : m_database(database), m_schema(schema) {}

    /// Makes the table and its triggers where they are missing or different; for the opening, under the write lock.
    void prepare();
    /// Ends the noting; within a transaction that replaces everything, before resume().
    void suspend();
    /// Notes again, and that everything has changed.
    void resume();

    /// The number of the last entry; 0 when there is none.
    std::int64_t last();
    /// The entries behind that number; absent when it can't be told any more, so that everything may have changed.
    std::optional<std::vector<Entry>> since(std::int64_t number);
    /// Lets old entries go; within the transaction that has written the last one.
    void shorten(std::int64_t last);

  private:
    Database& m_database;
    const Schema& m_schema;
};

/// A row of some entries, once.
struct LoggedRow {
    ChangeSet::Row row;
    /// Whether its links to others have changed.
    bool isLinked = false;
    /// Whether its columns have, in a way that who asks does not know.
    bool isNews = false;
};

std::vector<LoggedRow> gathered(const std::vector<ChangeLog::Entry>& entries);

/// Which entries of the log were written by the contexts of one container.
class OwnEntries {
  public:
    /// Before the commit, under the write lock: those behind `number`, up to `last`.
    void add(std::int64_t number, std::int64_t last);
    /// When the commit has failed: others will take these numbers.
    void takeBack(std::int64_t number);
    /// Of long ago it may be forgotten.
    bool contains(std::int64_t number) const;

  private:
    struct Range {
        std::int64_t before;
        std::int64_t last;
    };
    static constexpr std::size_t memory = 4096;

    mutable std::mutex m_mutex;
    std::deque<Range> m_ranges;
};

} // namespace quillorn
