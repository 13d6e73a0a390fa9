#pragma once

#include <algorithm>
#include <exception>
#include <functional>
#include <memory>
#include <utility>
#include <vector>

namespace quillorn {

/// A token: the observation ends when it goes, or when another is assigned to it.
class [[nodiscard]] Observation {
  public:
    Observation() = default;
    /// `registration` ends the observation when its last owner goes.
    explicit Observation(std::shared_ptr<void> registration) : m_registration(std::move(registration)) {}
    Observation(Observation&&) noexcept = default;
    Observation& operator=(Observation&& other) noexcept {
        // The old one ends outside of this object: what it held may look at it.
        const auto old = std::exchange(m_registration, std::move(other.m_registration));
        return *this;
    }
    ~Observation() = default;

  private:
    std::shared_ptr<void> m_registration;
};

/// Those who want to be told of something that happens on one thread, in the order in which they came.
///
/// While they are told, observers may add and end observations, their own too, and may end the life of this object:
/// who comes hears from the next time on, who has ended hears nothing any more.
template <typename... Arguments>
class Observers {
  public:
    using Handler = std::function<void(Arguments...)>;

    Observers() = default;
    ~Observers() = default;
    Observers(const Observers&) = delete;
    Observers& operator=(const Observers&) = delete;

    [[nodiscard]] Observation add(Handler handler) {
        auto entry = std::make_shared<Entry>(Entry{std::move(handler)});
        m_entries->push_back(entry);
        return Observation(std::shared_ptr<void>(
            nullptr, [entry = std::move(entry), entries = std::weak_ptr<Entries>(m_entries)](void*) {
                entry->ended = true;
                if (const auto list = entries.lock())
                    std::erase(*list, entry);
            }));
    }

    /// Every observer hears, whatever another one throws; the first thing thrown reaches the caller afterwards.
    void tell(Arguments... arguments) const {
        std::exception_ptr failure;
        const Entries present = *m_entries;
        for (const auto& entry : present) {
            if (entry->ended)
                continue;
            try {
                entry->handler(arguments...);
            } catch (...) {
                if (!failure)
                    failure = std::current_exception();
            }
        }
        if (failure)
            std::rethrow_exception(failure);
    }

    bool empty() const { return m_entries->empty(); }

  private:
    struct Entry {
        Handler handler;
        bool ended = false;
    };
    using Entries = std::vector<std::shared_ptr<Entry>>;

    std::shared_ptr<Entries> m_entries = std::make_shared<Entries>();
};

} // namespace quillorn
