#pragma once

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <functional>
#include <mutex>
#include <optional>
#include <pthread.h>
#include <vector>

namespace quillorn {

/// Threads for jobs that may block for as long as they like. A job never waits for another one: it gets an idle thread
/// or a new one, and there is no upper limit. A thread that stays idle for a while ends.
class WorkerPool {
  public:
    using Job = std::function<void()>;

    explicit WorkerPool(std::chrono::milliseconds idleTime = std::chrono::seconds(10)) : m_idleTime(idleTime) {}
    ~WorkerPool() { finish(); }
    WorkerPool(const WorkerPool&) = delete;
    WorkerPool& operator=(const WorkerPool&) = delete;

    /// What the job throws is dropped. Throws std::system_error when the system has no thread to give; the job is then
    /// destroyed without having run.
    void submit(Job job);
    /// Waits for every job to end and for every thread to be gone. Not to be called from a job.
    void finish();
    /// Threads now alive, idle ones included.
    std::size_t threadCount() const;

  private:
    struct Idle {
        std::condition_variable wake;
        Job job; // empty until there is one
    };

    static void* threadMain(void* argument);
    void work(Job job);
    /// Blocks; an empty job means that the thread is to end.
    Job nextJob();
    void startThread(Job job);

    const std::chrono::milliseconds m_idleTime;
    mutable std::mutex m_mutex;
    std::condition_variable m_threadEnded;
    std::vector<Idle*> m_idle;           // the last one is used first: its stack is warm, and the others get to end
    std::optional<pthread_t> m_finished; // the last one to end; it joins the one before
    std::size_t m_threads = 0;
    bool m_closing = false;
};

} // namespace quillorn
