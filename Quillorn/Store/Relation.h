#pragma once

#include <cstddef>
#include <cstdint>
#include <iterator>
#include <vector>

namespace quillorn {

class Entity;

/// The private key of a row; 0 means none.
using RowKey = std::int64_t;

/// The stored side of a to-one relation: the key of the row it names and, once loaded, the object.
class ReferenceBase {
    friend class Entity;
    friend class ModelContext;
    friend class RelationLoader;
    friend class ContextSave;
    friend class ContextRefresh;
    friend class ContextRelease;
    friend class RecordedEdit;
    template <auto Member>
    friend struct ColumnAccess;

    Entity* m_object = nullptr;
    RowKey m_key = 0;
    bool m_resolved = true; // an absent reference needs no loading
};

template <class Target>
class Reference : public ReferenceBase {
  public:
    using TargetType = Target;
};

/// A to-many relation. A new object's list is absent; a stored object's is loaded on first touch.
class ListBase {
  public:
    bool isAbsent() const { return m_state == State::absent; }
    std::size_t size() const { return m_items.size(); }
    bool empty() const { return m_items.empty(); }

  protected:
    friend class Entity;
    friend class ModelContext;
    friend class RelationLoader;
    friend class ContextSave;
    friend class ContextRefresh;
    friend class ContextRelease;
    friend class RecordedEdit;

    /// `loading` while its owner is one of those that the loader is at work for.
    enum class State : std::uint8_t { absent, notLoaded, loading, loaded };

    std::vector<Entity*> m_items;
    State m_state = State::absent;
};

/// Its members in the store's order; readers sort for themselves.
template <class Target>
class List : public ListBase {
  public:
    using TargetType = Target;

    class Iterator {
      public:
        using iterator_category = std::forward_iterator_tag;
        using value_type = Target*;
        using difference_type = std::ptrdiff_t;
        using pointer = Target* const*;
        using reference = Target*;

        Iterator() = default;
        explicit Iterator(std::vector<Entity*>::const_iterator at) : m_at(at) {}
        Target* operator*() const { return static_cast<Target*>(*m_at); }
        Iterator& operator++() {
            ++m_at;
            return *this;
        }
        Iterator operator++(int) { return Iterator(m_at++); }
        bool operator==(const Iterator&) const = default;

      private:
        std::vector<Entity*>::const_iterator m_at;
    };

    // Names that algorithms and matchers for containers ask for.
    using value_type = Target*;
    using const_iterator = Iterator;

    Iterator begin() const { return Iterator(m_items.begin()); }
    Iterator end() const { return Iterator(m_items.end()); }
};

} // namespace quillorn
