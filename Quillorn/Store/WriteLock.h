#pragma once

#include <chrono>
#include <condition_variable>
#include <filesystem>
#include <mutex>
#include <optional>
#include <utility>

namespace quillorn {

/// Lets one writer at a time near a store: a mutex between the threads of this container and an advisory lock file
/// between containers and processes. Every write transaction and every checkpoint happens under it.
///
/// SQLite before 3.51.3 can lose a committed transaction when one connection checkpoints at the moment in which
/// another one commits and the log starts over (the "WAL-reset" fault). SQLite's own locks don't exclude that; this
/// one does. It also makes writers queue fairly, where SQLite's busy wait lets one of them starve.
class WriteLock {
  public:
    /// `file` is created, with mode 0600, beside the store; absent for a store in memory.
    explicit WriteLock(const std::optional<std::filesystem::path>& file);
    ~WriteLock();
    WriteLock(const WriteLock&) = delete;
    WriteLock& operator=(const WriteLock&) = delete;

    /// Holds the lock for its lifetime.
    class Guard {
      public:
        Guard(Guard&& other) noexcept : m_lock(std::exchange(other.m_lock, nullptr)) {}
        Guard& operator=(Guard&&) = delete;
        ~Guard();

      private:
        friend class WriteLock;
        explicit Guard(WriteLock& lock) : m_lock(&lock) {}
        WriteLock* m_lock;
    };

    /// Throws StoreError when the lock is not to be had within `patience`, by default what a person would wait.
    [[nodiscard]] Guard acquire(std::chrono::milliseconds patience = std::chrono::seconds(15));

  private:
    void lockFile(std::chrono::steady_clock::time_point deadline);
    void release();

    // Not a timed mutex: ThreadSanitizer does not know its waits by the steady clock.
    std::mutex m_mutex;
    std::condition_variable m_released;
    bool m_isHeld = false;
    int m_descriptor = -1;
};

} // namespace quillorn
