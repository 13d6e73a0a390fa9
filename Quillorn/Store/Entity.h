#pragma once

#include "Platform/Date.h"
#include "Platform/UUID.h"
#include "Store/Relation.h"

#include <cstddef>
#include <cstdint>
#include <type_traits>
#include <utility>

namespace quillorn {

struct EntityType;
class ModelContext;

/// A record as an object. It belongs to the ModelContext that made it, lives as long as that one, and is touched on
/// that context's thread alone. Nothing is written before the context's save().
class Entity {
  public:
    virtual ~Entity() = default;
    Entity(const Entity&) = delete;
    Entity& operator=(const Entity&) = delete;

    const UUID& id() const { return m_id; }
    /// The private row key: 0 until the first save, then fixed.
    RowKey key() const { return m_key; }
    const EntityType& type() const { return *m_type; }
    ModelContext& context() const { return *m_context; }
    /// True from the removal on; the object stays allocated until its context goes, or lets go of it.
    bool isDeleted() const { return m_state == State::deleted; }

  protected:
    Entity() = default;

    /// The one way in which a field changes: compare, store, note. `column` is the field's place in the type's table.
    template <class Field, class Value>
    void assign(std::size_t column, Field& field, Value&& value) {
        if (field == value)
            return;
        field = std::forward<Value>(value);
        markChanged(column);
    }
    /// The same for a to-one relation; the lists of the other side that are loaded follow.
    void assignReference(std::size_t column, ReferenceBase& reference, Entity* target);
    /// The target of a to-one relation, loaded on first touch for all objects of this type that lack it.
    Entity* resolve(std::size_t column, const ReferenceBase& reference) const;
    /// The row key of a to-one relation's target, known without loading it; 0 for none and for what is not saved yet.
    static RowKey keyOf(const ReferenceBase& reference) {
        return reference.m_object != nullptr ? reference.m_object->m_key : reference.m_key;
    }
    /// Loads a to-many relation on first touch, for all objects of this type that lack it.
    void load(std::size_t relation, const ListBase& list) const;
    /// Makes `targets` the members of a many-to-many relation. Repeated and absent members count once.
    void assignLinks(std::size_t relation, const std::vector<Entity*>& targets);

  private:
    friend class ModelContext;
    friend class RelationLoader;
    friend class ContextSave;
    friend class ContextRefresh;
    friend class ContextRelease;
    friend class RecordedEdit;
    friend class Hold;
    friend class ObservedRows;
    template <auto Member>
    friend struct ColumnAccess;

    enum class State : std::uint8_t { inserted, stored, deleted };

    void markChanged(std::size_t column);

    ModelContext* m_context = nullptr;
    const EntityType* m_type = nullptr;
    RowKey m_key = 0;
    UUID m_id;
    std::uint32_t m_changed = 0; // a bit for each column that the next save writes
    std::uint32_t m_holds = 0;   // how many hold it in a context that lets go of its objects
    State m_state = State::inserted;
    bool m_isKept = false; // while ContextRelease looks for what stays
};

} // namespace quillorn
