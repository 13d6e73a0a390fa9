#pragma once

#include "Store/ModelContext.h"

namespace quillorn {

/// One refresh of a context: its objects show the store as it is now.
class ContextRefresh {
  public:
    explicit ContextRefresh(ModelContext& context) : m_context(context) {}

    /// Throws StoreError; the objects may then be partly old and partly new, and a later refresh mends that.
    void run();

  private:
    void rereadRows(ModelContext::Registry& registry);
    void rereadColumns(Entity& object, const Statement& row) const;
    void forget(Entity& object);
    void unloadLists(ModelContext::Registry& registry) const;

    ModelContext& m_context;
};

} // namespace quillorn
