#pragma once

#include "Platform/FileDescriptor.h"
#include "Store/StoreFiles.h"

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <deque>
#include <filesystem>
#include <mutex>
#include <optional>
#include <string>
#include <utility>

namespace quillorn {

/// Lets one writer at a time near a store: a mutex between the threads of this container and an advisory lock file
/// between containers and processes. Every write transaction and every checkpoint happens under it.
///
/// SQLite before 3.51.3 can lose a committed transaction when one connection checkpoints at the moment in which
/// another one commits and the log starts over (the "WAL-reset" fault). SQLite's own locks don't exclude that; this
/// one does.
///
/// Threads get the lock in the order in which they came. Between processes there is no order.
class WriteLock {
  public:
    /// What a person would wait.
    static constexpr std::chrono::milliseconds usualPatience = std::chrono::seconds(15);

    /// `file` is created, with mode 0600, beside the store; absent for a store in memory. Throws StoreError.
    explicit WriteLock(const std::optional<std::filesystem::path>& file);
    ~WriteLock() = default;
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

    /// Throws StoreBusyError when the lock is not to be had within `patience`, StoreLostError when the lock file is
    /// gone and its folder too.
    [[nodiscard]] Guard acquire(std::chrono::milliseconds patience = usualPatience);

    /// The threads that wait for another thread of this container.
    std::size_t waiting() const;

  private:
    /// A thread that waits, and has its own signal, so that a release wakes that one alone.
    struct Waiter {
        std::condition_variable called;
        bool hasTurn = false;
    };
    using Deadline = std::chrono::steady_clock::time_point;

    void awaitTurn(Deadline deadline);
    void letGo();
    void passOn();
    void lockFile(Deadline deadline);
    void openFile();

    // Not a timed mutex: ThreadSanitizer does not know its waits by the steady clock.
    mutable std::mutex m_mutex;
    std::deque<Waiter*> m_waiters; // the next one first
    bool m_isHeld = false;
    // What follows belongs to the holder.
    std::string m_path;
    FileDescriptor m_file;
    std::optional<FileIdentity> m_identity;
};

} // namespace quillorn
