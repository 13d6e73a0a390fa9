#pragma once

#include "Platform/MainQueue.h"
#include "Platform/NotificationCenter.h"
#include "Store/ModelContext.h"

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace quillorn {

class StoreError;
class SystemLog;

/// The context of the main queue, as long-lived as the application. It follows what other threads and processes write,
/// tells its listeners, and saves by itself shortly after a change. Belongs to the main thread.
///
/// Between two turns of the queue any object may turn out deleted, so listeners keep ids, not references.
class MainContext {
  public:
    /// How often it looks for changes of other processes, and for changes of its own to save.
    static constexpr std::chrono::milliseconds period{500};

    /// How long a connection to the store rests at least before it is closed.
    static constexpr std::chrono::seconds restingTime{30};

    /// With the changes of a save of this process; with null when the file has changed, by another process or not, or
    /// when everything was replaced. The context has been refreshed by then.
    using Listener = std::function<void(const ChangeSet*)>;

    MainContext(ModelContainer& container, MainQueue& queue, SystemLog& log);
    ~MainContext();
    MainContext(const MainContext&) = delete;
    MainContext& operator=(const MainContext&) = delete;

    ModelContext& context() { return m_context; }
    /// For the lifetime of this object.
    void addListener(Listener listener) { m_listeners.push_back(std::move(listener)); }

  private:
    void tick();
    bool hasFileChanged();
    void follow(const ChangeSet* changes);
    void report(const StoreError& error);

    ModelContext m_context;
    MainQueue& m_queue;
    SystemLog& m_log;
    std::optional<std::int64_t> m_fileVersion;
    std::string m_lastFailure;
    std::vector<Listener> m_listeners;
    Observation m_saves;
    MainQueue::TimerId m_timer;
    MainQueue::TimerId m_releaseTimer;
};

} // namespace quillorn
