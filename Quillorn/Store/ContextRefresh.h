#pragma once

#include "Store/ModelContext.h"

#include <vector>

namespace quillorn {

/// One refresh of a context: its objects show the store as it is now. Throws StoreError; the objects may then be partly
/// old and partly new, and the same refresh once more mends that.
class ContextRefresh {
  public:
    explicit ContextRefresh(ModelContext& context) : m_context(context) {}

    /// Reads every object again, in a new snapshot.
    void run();
    /// Reads these rows again, in the snapshot at hand: the cost is theirs alone. Lists of others follow in place.
    void run(const std::vector<LoggedRow>& rows);

  private:
    using Registry = ModelContext::Registry;

    void rereadRows(Registry& registry);
    void rereadColumns(Entity& object, const Statement& row);
    void forget(Entity& object);
    void unloadLists(Registry& registry) const;

    void readRows(Registry& registry, const std::vector<RowKey>& keys);
    /// Makes an object of a row that the context lacks when a list that is loaded has to have it.
    void takeInForLists(Registry& registry, const Statement& row);
    bool mayBelongToLists(const EntityType& type) const;
    void rereadReference(Entity& object, std::size_t column, const Statement& row);
    void leaveLists(Entity& object);
    void clearUnsavedReferencesTo(const Entity& object) const;
    static void unloadLinks(Entity& object);
    static void addInOrder(ListBase& list, Entity& object);
    /// The list of the target that mirrors the reference; null where there is none or it is not loaded.
    ListBase* listOf(const EntityType& type, std::size_t column, RowKey target) const;
    Entity* objectOf(const EntityType& type, RowKey key) const;

    ModelContext& m_context;
};

} // namespace quillorn
