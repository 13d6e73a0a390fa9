#pragma once

#include "Store/ModelContext.h"

#include <string>
#include <vector>

namespace quillorn {

/// Loads one relation for all objects of a type in a context that lack it: a constant number of statements, however
/// many objects there are.
class RelationLoader {
  public:
    explicit RelationLoader(ModelContext& context) : m_context(context) {}

    void loadReferences(const EntityType& type, std::size_t column);
    void loadList(const EntityType& type, std::size_t relation);

  private:
    using Objects = std::vector<Entity*>;
    /// Rows of a table of links, those of one owner together.
    struct Links {
        std::vector<RowKey> owners;
        std::vector<RowKey> others;
    };

    Objects objectsWithoutList(const EntityType& type, const ToMany& relation);
    void loadChildren(const ToMany& relation, const Objects& owners);
    void loadLinks(const EntityType& type, const ToMany& relation, const Objects& owners);
    Links readLinks(const ToMany& relation, const Objects& owners);
    /// The list of that owner if it is one of those at work for, else null.
    static ListBase* listBeingLoaded(const ToMany& relation, Entity* owner);
    /// Makes objects of the rows of those keys that the context lacks.
    void fetchMissing(const EntityType& type, const std::vector<RowKey>& keys);
    Entity* objectOf(const EntityType& type, RowKey key);

    ModelContext& m_context;
};

} // namespace quillorn
