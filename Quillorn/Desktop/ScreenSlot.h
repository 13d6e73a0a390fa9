#pragma once

namespace quillorn {

/// A screen that comes and goes with what is selected.
template <typename Type>
class ScreenSlot {
  public:
    ScreenSlot() = default;
    ScreenSlot(const ScreenSlot&) = delete;
    ScreenSlot& operator=(const ScreenSlot&) = delete;
    ~ScreenSlot() { delete m_screen; }

    Type* get() const { return m_screen; }
    Type* operator->() const { return m_screen; }
    explicit operator bool() const { return m_screen != nullptr; }

    /// The old one goes when the event at hand is done: it may be its own.
    void set(Type* screen) {
        if (m_screen != nullptr)
            m_screen->deleteLater();
        m_screen = screen;
    }

  private:
    Type* m_screen = nullptr;
};

} // namespace quillorn
