#pragma once

#include <QPointer>
#include <vector>

namespace quillorn {

/// A screen that comes and goes with what is selected.
template <typename Type>
class ScreenSlot {
  public:
    ScreenSlot() = default;
    ScreenSlot(const ScreenSlot&) = delete;
    ScreenSlot& operator=(const ScreenSlot&) = delete;
    ~ScreenSlot() {
        for (const QPointer<Type>& former : m_former)
            delete former.data();
        delete m_screen;
    }

    Type* get() const { return m_screen; }
    Type* operator->() const { return m_screen; }
    explicit operator bool() const { return m_screen != nullptr; }

    /// The old one goes when the event at hand is done, as it may be its own, and at the latest with the slot, since
    /// the store goes then.
    void set(Type* screen) {
        std::erase(m_former, nullptr);
        if (m_screen != nullptr) {
            m_former.emplace_back(m_screen);
            m_screen->deleteLater();
        }
        m_screen = screen;
    }

  private:
    Type* m_screen = nullptr;
    std::vector<QPointer<Type>> m_former;
};

} // namespace quillorn
