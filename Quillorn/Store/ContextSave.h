#pragma once

#include "Store/ModelContext.h"

#include <chrono>
#include <cstdint>
#include <functional>
#include <optional>
#include <utility>
#include <vector>

namespace quillorn {

/// One save of a context: inserts, updates, deletions and links in one transaction, then the objects follow.
class ContextSave {
  public:
    /// `turn` is the write lock, where it is at hand.
    ContextSave(ModelContext& context, std::chrono::milliseconds patience,
                std::optional<WriteLock::Guard> turn = std::nullopt)
        : m_context(context),
          m_patience(patience),
          m_turn(std::move(turn)) {}

    /// Throws StoreError, with nothing written and the objects as they were.
    void run();
    /// The same for rows that `write` writes by statements of its own, in an updating context without changes. They are
    /// not noted one by one: whoever follows the store learns that anything may have changed. Rolls back where `write`
    /// returns false, and where it throws.
    void runStatements(const std::function<bool()>& write);

  private:
    void beginTransaction();
    void writeAll();
    void assignKeys();
    void insertRow(Entity& object);
    void updateRow(Entity& object);
    void deleteRows();
    void writeLinks();
    void readLog();
    void settleObjects();
    /// For a context that follows the log: which entries it need not follow.
    void noteEcho() const;
    void abandon() noexcept;

    ModelContext& m_context;
    std::chrono::milliseconds m_patience; // with other writers
    std::optional<WriteLock::Guard> m_turn;
    std::int64_t m_logBefore = 0; // the number of the last entry that is not of this save
    /// What this save has noted in the log.
    std::vector<ChangeLog::Entry> m_entries;
    std::vector<Entity*> m_vanished; // changed here, but deleted by somebody else before
};

} // namespace quillorn
