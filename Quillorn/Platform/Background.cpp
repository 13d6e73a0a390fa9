#include "Platform/Background.h"

#include "Platform/Process.h"

#include <algorithm>
#include <list>
#include <mutex>
#include <system_error>
#include <thread>

namespace quillorn {

/// Those that run, and those that have ended since one was last added.
struct Background::Threads {
    struct Entry {
        std::stop_source stop;
        std::thread thread;
        bool hasEnded = false;
    };

    void joinEnded() {
        std::list<Entry> ended;
        {
            const std::lock_guard lock(mutex);
            for (auto entry = entries.begin(); entry != entries.end();) {
                const auto next = std::next(entry);
                if (entry->hasEnded)
                    ended.splice(ended.end(), entries, entry);
                entry = next;
            }
        }
        for (Entry& entry : ended)
            entry.thread.join();
    }

    std::mutex mutex;
    std::list<Entry> entries;
};

Background::Background(MainQueue& queue) : m_queue(queue), m_threads(std::make_unique<Threads>()) {}

Background::~Background() {
    // Only the main thread adds to the list.
    for (Threads::Entry& entry : m_threads->entries)
        entry.stop.request_stop();
    for (Threads::Entry& entry : m_threads->entries)
        entry.thread.join();
}

void Background::spawn(Priority priority, const std::stop_source& stop, const std::function<void()>& work) {
    m_threads->joinEnded();
    const std::lock_guard lock(m_threads->mutex);
    Threads::Entry& entry = m_threads->entries.emplace_back();
    entry.stop = stop;
    try {
        entry.thread = std::thread([threads = m_threads.get(), &entry, priority, work] {
            if (priority == Priority::low)
                lowerThreadPriority();
            work();
            const std::lock_guard ended(threads->mutex);
            entry.hasEnded = true;
        });
    } catch (const std::system_error&) {
        m_threads->entries.pop_back();
        work(); // without room for another thread a pause of this one is better than nothing done
    }
}

} // namespace quillorn
