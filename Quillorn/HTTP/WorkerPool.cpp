#include "HTTP/WorkerPool.h"

#include "Platform/Process.h"

#include <algorithm>
#include <memory>
#include <system_error>
#include <utility>

namespace quillorn {

namespace {

// Address space, not memory: only pages that were touched count. Handlers parse and print nested JSON here, which is
// what sets the lower bound. Sanitizers multiply the size of each frame.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr std::size_t stackSize = 8 * 1024 * 1024;
#else
constexpr std::size_t stackSize = 1024 * 1024;
#endif

struct WorkerStart {
    WorkerPool* pool;
    WorkerPool::Job job;
};

} // namespace

void WorkerPool::finish() {
    std::unique_lock lock(m_mutex);
    m_closing = true;
    for (Idle* idle : m_idle)
        idle->wake.notify_one();
    m_threadEnded.wait(lock, [this] { return m_threads == 0; });
    if (m_finished)
        ::pthread_join(*m_finished, nullptr);
    m_finished.reset();
    m_closing = false;
}

void WorkerPool::submit(Job job) {
    const std::lock_guard lock(m_mutex);
    if (m_idle.empty()) {
        startThread(std::move(job));
        return;
    }
    Idle& idle = *m_idle.back();
    m_idle.pop_back();
    idle.job = std::move(job);
    // Under the lock: once it is released the thread may be gone, and `idle` with it.
    idle.wake.notify_one();
}

std::size_t WorkerPool::threadCount() const {
    const std::lock_guard lock(m_mutex);
    return m_threads;
}

void WorkerPool::startThread(Job job) {
    m_idle.reserve(m_threads + 1); // so that a thread needs no memory to go idle
    auto start = std::make_unique<WorkerStart>(WorkerStart{this, std::move(job)});
    pthread_attr_t attributes;
    if (const int error = ::pthread_attr_init(&attributes); error != 0)
        throw std::system_error(error, std::generic_category(), "pthread_attr_init");
    ::pthread_attr_setstacksize(&attributes, stackSize);
    pthread_t thread{};
    const int error = ::pthread_create(&thread, &attributes, threadMain, start.get());
    ::pthread_attr_destroy(&attributes);
    if (error != 0)
        throw std::system_error(error, std::generic_category(), "pthread_create");
    static_cast<void>(start.release()); // the thread has it now
    ++m_threads;
}

void* WorkerPool::threadMain(void* argument) {
    const std::unique_ptr<WorkerStart> start(static_cast<WorkerStart*>(argument));
    start->pool->work(std::move(start->job));
    return nullptr;
}

void WorkerPool::work(Job job) {
    while (job) {
        try {
            job();
        } catch (...) {
            // Jobs report their own failures; nothing may end the process from here.
        }
        job = nullptr; // what it holds must not live on in an idle thread
        job = nextJob();
    }
}

WorkerPool::Job WorkerPool::nextJob() {
    Idle self;
    std::unique_lock lock(m_mutex);
    bool wasLastIdle = false;
    if (!m_closing) {
        m_idle.push_back(&self);
        self.wake.wait_for(lock, m_idleTime, [&] { return self.job || m_closing; });
        if (self.job)
            return std::move(self.job);
        std::erase(m_idle, &self);
        wasLastIdle = !m_closing && m_idle.empty();
    }
    --m_threads;
    const auto previous = std::exchange(m_finished, ::pthread_self());
    m_threadEnded.notify_all();
    lock.unlock();
    if (previous)
        ::pthread_join(*previous, nullptr);
    if (wasLastIdle)
        releaseFreeMemory(); // not between two large answers: taking fresh pages is slow
    return nullptr;
}

} // namespace quillorn
