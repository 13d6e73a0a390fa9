#pragma once

#include "Platform/MainQueue.h"
#include "Platform/Observers.h"

#include <functional>
#include <memory>
#include <mutex>
#include <utility>
#include <vector>

namespace quillorn {

/// Those who want to be told, each on its queue, of something that happens on any thread. An observation belongs to the
/// thread of its queue; once it has ended nothing is told.
class QueuedObservers {
  public:
    using Handler = std::function<void()>;

    /// The queue must outlive this object's telling.
    [[nodiscard]] Observation add(MainQueue& queue, Handler handler) {
        auto entry = std::make_shared<Entry>(Entry{queue, std::move(handler)});
        const std::lock_guard lock(m_mutex);
        std::erase_if(m_entries, [](const auto& other) { return other.expired(); });
        m_entries.push_back(entry);
        // The handler goes on the thread on which the observation ends, whoever is just telling.
        return Observation(
            std::shared_ptr<void>(nullptr, [entry = std::move(entry)](void*) { entry->handler = nullptr; }));
    }

    void tell() const {
        const std::lock_guard lock(m_mutex);
        for (const auto& observer : m_entries)
            if (const auto entry = observer.lock())
                entry->queue.post([observer] {
                    const auto present = observer.lock();
                    if (present && present->handler)
                        Handler(present->handler)(); // a copy, since it may end its own observation
                });
    }

  private:
    struct Entry {
        MainQueue& queue;
        Handler handler;
    };

    mutable std::mutex m_mutex;
    std::vector<std::weak_ptr<Entry>> m_entries;
};

} // namespace quillorn
