#pragma once

#include "Store/Entity.h"

#include <utility>

namespace quillorn {

/// Keeps an object in a context that lets go of what nobody holds. It ends before its context does.
class Hold {
  public:
    Hold() = default;
    explicit Hold(Entity& object) : m_object(&object) { ++m_object->m_holds; }
    Hold(const Hold& other) : m_object(other.m_object) {
        if (m_object != nullptr)
            ++m_object->m_holds;
    }
    Hold(Hold&& other) noexcept : m_object(std::exchange(other.m_object, nullptr)) {}
    Hold& operator=(const Hold& other) noexcept {
        Hold copy(other);
        std::swap(m_object, copy.m_object);
        return *this;
    }
    Hold& operator=(Hold&& other) noexcept {
        Hold taken(std::move(other));
        std::swap(m_object, taken.m_object);
        return *this;
    }
    ~Hold() {
        if (m_object != nullptr)
            --m_object->m_holds;
    }

    /// Null when nothing is held.
    Entity* object() const { return m_object; }

  private:
    Entity* m_object = nullptr;
};

/// A record of the main context that its holder keeps beyond a turn of the queue. It may turn out deleted.
template <class Type>
class Held {
  public:
    Held() = default;
    explicit Held(Type& record) : m_hold(record) {}

    explicit operator bool() const { return m_hold.object() != nullptr; }
    Type* get() const { return static_cast<Type*>(m_hold.object()); }
    Type* operator->() const { return get(); }
    Type& operator*() const { return *get(); }

  private:
    Hold m_hold;
};

} // namespace quillorn
