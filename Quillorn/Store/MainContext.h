#pragma once

#include "Platform/MainQueue.h"
#include "Platform/NotificationCenter.h"
#include "Platform/Observers.h"
#include "Store/ModelContext.h"

#include <atomic>
#include <chrono>
#include <exception>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <thread>
#include <vector>

namespace quillorn {

class StoreError;
class SystemLog;

/// The context of the main queue, as long-lived as the application. It follows what other threads and processes write,
/// once a turn of the queue and at the cost of the change, tells who observes it, and saves by itself shortly after a
/// change. Belongs to the main thread, which it never lets wait.
///
/// An object is good for a turn of the queue. Who keeps one longer holds it (Held), and may find it deleted.
class MainContext {
  public:
    /// How long after a change it saves by itself.
    static constexpr std::chrono::milliseconds savingDelay{500};
    /// How long a save waits for other writers on the main thread.
    static constexpr std::chrono::milliseconds patience{5};
    /// How often it looks whether others have written, should nobody have told; how long connections and objects that
    /// nobody needs rest at least.
    static constexpr std::chrono::seconds restingTime{30};

    MainContext(ModelContainer& container, MainQueue& queue, SystemLog& log);
    ~MainContext();
    MainContext(const MainContext&) = delete;
    MainContext& operator=(const MainContext&) = delete;

    ModelContext& context() { return m_context; }
    /// Saves what was changed. False while others are writing, or when it fails: then it saves as soon as it is its
    /// turn, or tries again.
    bool save();

    using Observer = std::function<void(const ChangeSet&)>;
    /// Told once a turn of what any context or process has written, own saves too; the objects show it by then.
    [[nodiscard]] Observation observe(Observer observer) { return m_observers.add(std::move(observer)); }

    /// To be called, on any thread, when the store's files were touched: looks in the next turn, and some more times,
    /// since a commit touches the files shortly before it can be seen.
    void noticeFileChange() { m_post->notice(true); }

  private:
    friend class ObservedRows;
    friend class ObservedCount;

    /// What other threads ask of a context that may be gone.
    struct Post : std::enable_shared_from_this<Post> {
        Post(MainContext& owner, MainQueue& mainQueue) : context(&owner), queue(mainQueue) {}
        void notice(bool isFile);

        MainContext* context; // for the main thread
        MainQueue& queue;
        std::atomic<bool> isPosted = false;
        std::atomic<bool> isFileTouched = false;
        /// What the thread that waits for other writers has got; of the main thread when that one has ended.
        std::optional<WriteLock::Guard> turn;
        std::string refusal;
    };
    struct Timer {
        std::optional<MainQueue::TimerId> id;
        std::chrono::milliseconds delay{0};
    };

    /// Where the context stands in the log of changes.
    struct Position {
        std::int64_t entry = 0;
        std::int64_t schemaVersion = 0; // SQLite's, by which a change of the log itself would show
    };

    /// Follows the changes of others and its own, in one snapshot; comes again when that fails.
    void look();
    void lookAgain();
    void follow();
    Position readPosition();
    /// What the log has had since `m_position`, which leads to `next`; absent when anything may have changed.
    std::optional<std::vector<LoggedRow>> readLog(Position& next);
    void tell(const ChangeSet& changes);
    /// Asks for another look, although there may be nothing new: a query could not be read.
    void retryLook();

    void noteUse();
    /// The end of a turn in which the context was used.
    void settle();
    void saveSoon();
    /// With the lock at hand, if there is one.
    bool save(std::optional<WriteLock::Guard> turn);
    /// Waits for the other writers on a thread, in line with them, and saves when that has got the lock.
    void waitForTurn();
    void takeTurn();
    void saveLater();
    void rest();
    void report(const std::exception& error, std::string& last);

    void arm(Timer& timer, void (MainContext::*work)());
    void cancel(Timer& timer);

    ModelContext m_context;
    MainQueue& m_queue;
    SystemLog& m_log;
    std::shared_ptr<Post> m_post;
    /// For queries: first all of them read what has changed, then they show it. A failure of the first lets all of it
    /// come again.
    Observers<const ChangeSet&> m_readers;
    Observers<> m_showers;
    Observers<const ChangeSet&> m_observers;

    std::optional<Position> m_position; // absent until it could be read
    std::optional<std::int64_t> m_fileVersion;
    bool m_isBehind = true;
    bool m_isWorking = false;
    bool m_isUsePosted = false;

    std::string m_lookFailure, m_saveFailure; // as last reported
    Observation m_saves;
    std::thread m_waiter;
    Timer m_saveTimer;
    Timer m_retryTimer;
    Timer m_lookTimer;
    MainQueue::TimerId m_restTimer;
};

} // namespace quillorn
