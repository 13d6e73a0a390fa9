#pragma once

#include <QPointer>
#include <functional>
#include <map>
#include <utility>
#include <vector>

namespace quillorn {

/// A screen that comes and goes with what is selected.
template <typename Type>
class ScreenSlot {
  public:
    using Make = std::function<Type*()>;

    ScreenSlot() = default;
    ScreenSlot(const ScreenSlot&) = delete;
    ScreenSlot& operator=(const ScreenSlot&) = delete;
    ~ScreenSlot() {
        for (const QPointer<Type>& former : m_former)
            delete former.data();
        if (!m_isKept)
            delete m_screen;
        for (const auto& [key, kept] : m_kept)
            delete kept;
    }

    /// Makes what setLater() was given to make.
    Type* get() {
        if (m_make)
            m_screen = std::exchange(m_make, {})();
        return m_screen;
    }
    Type* operator->() { return get(); }
    /// Whether there is one by now.
    explicit operator bool() const { return m_screen != nullptr; }

    /// The old one goes when the event at hand is done, as it may be its own, and at the latest with the slot, since
    /// the store goes then.
    void set(Type* screen) {
        std::erase(m_former, nullptr);
        if (m_screen != nullptr && !m_isKept) {
            m_former.emplace_back(m_screen);
            m_screen->deleteLater();
        }
        m_screen = screen;
        m_isKept = false;
        m_make = {};
    }
    /// One that is made when somebody looks.
    void setLater(Make make) {
        set(nullptr);
        m_make = std::move(make);
    }
    /// The one that had this key before, else a new one. It stays when another one comes: following changes costs it
    /// less than to begin anew.
    void keep(int key, const Make& make) {
        set(nullptr);
        Type*& kept = m_kept[key];
        if (kept == nullptr)
            kept = make();
        m_screen = kept;
        m_isKept = true;
    }

  private:
    Type* m_screen = nullptr;
    bool m_isKept = false;
    Make m_make;
    std::map<int, Type*> m_kept;
    std::vector<QPointer<Type>> m_former;
};

} // namespace quillorn
