#pragma once

#include "Store/ModelContext.h"

#include <chrono>
#include <map>
#include <memory>
#include <string_view>
#include <utility>

namespace quillorn {

/// One save of a context: inserts, updates, deletions and links in one transaction, then the objects follow.
class ContextSave {
  public:
    ContextSave(ModelContext& context, std::chrono::milliseconds patience) : m_context(context), m_patience(patience) {}

    /// Throws StoreError, with nothing written and the objects as they were.
    void run();

  private:
    using RowId = std::pair<const EntityType*, RowKey>;

    void beginTransaction();
    void observeRows();
    void writeAll();
    void assignKeys();
    void insertRow(Entity& object);
    void updateRow(Entity& object);
    void deleteRows();
    void writeLinks();
    void noteRow(const EntityType* type, RowKey key, RowChange change);
    void settleObjects();
    void publish();
    void abandon() noexcept;

    ModelContext& m_context;
    std::chrono::milliseconds m_patience; // with other writers
    /// What SQLite reports while the transaction runs, each row once.
    std::map<RowId, RowChange> m_rows;
    std::vector<Entity*> m_vanished; // changed here, but deleted by somebody else before
};

} // namespace quillorn
