#include "Store/WriteLock.h"

#include "Store/StoreError.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <fmt/core.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <system_error>
#include <thread>
#include <unistd.h>

namespace quillorn {

namespace {

using namespace std::chrono_literals;

constexpr const char* busy = "The store is busy: another program has been writing to it for too long";

} // namespace

WriteLock::WriteLock(const std::optional<std::filesystem::path>& file) {
    if (!file)
        return;
    m_path = file->string();
    openFile();
}

WriteLock::Guard WriteLock::acquire(std::chrono::milliseconds patience) {
    const auto deadline = std::chrono::steady_clock::now() + patience;
    awaitTurn(deadline);
    try {
        if (m_file)
            lockFile(deadline);
    } catch (...) {
        letGo();
        throw;
    }
    return Guard(*this);
}

std::size_t WriteLock::waiting() const {
    const std::lock_guard lock(m_mutex);
    return m_waiters.size();
}

void WriteLock::awaitTurn(Deadline deadline) {
    std::unique_lock lock(m_mutex);
    if (!m_isHeld) {
        m_isHeld = true;
        return;
    }
    Waiter self;
    m_waiters.push_back(&self);
    if (!self.called.wait_until(lock, deadline, [&] { return self.hasTurn; })) {
        std::erase(m_waiters, &self);
        throw StoreBusyError(busy);
    }
}

void WriteLock::passOn() {
    const std::lock_guard lock(m_mutex);
    if (m_waiters.empty()) {
        m_isHeld = false;
        return;
    }
    // It stays held: nobody comes between this thread and the next one. That one ends its wait, and with it the signal,
    // as soon as the mutex is free, so it is called before.
    Waiter& next = *m_waiters.front();
    m_waiters.pop_front();
    next.hasTurn = true;
    next.called.notify_one();
}

void WriteLock::lockFile(Deadline deadline) {
    // flock can't wait with a limit, and a stopped process must not hang this one: so try, with growing pauses.
    auto pause = std::chrono::microseconds(50);
    for (;;) {
        if (::flock(m_file.number(), LOCK_EX | LOCK_NB) == 0) {
            if (identityOf(m_path) == m_identity)
                return;
            openFile(); // others come by the path, and would not meet the lock of a file that is gone
            continue;
        }
        if (errno != EWOULDBLOCK && errno != EINTR)
            throw StoreError(fmt::format("Can't lock the store: {}", std::generic_category().message(errno)));
        if (std::chrono::steady_clock::now() >= deadline)
            throw StoreBusyError(busy);
        std::this_thread::sleep_for(pause);
        pause = std::min<std::chrono::microseconds>(pause * 2, 2ms);
    }
}

void WriteLock::openFile() {
    FileDescriptor file(::open(m_path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600));
    struct stat status{};
    if (!file || ::fstat(file.number(), &status) != 0) {
        const int error = errno;
        const std::string words =
            fmt::format("Can't open the lock file {}: {}", m_path, std::generic_category().message(error));
        if (m_file && (error == ENOENT || error == ENOTDIR))
            throw StoreLostError(words);
        throw StoreError(words);
    }
    m_file = std::move(file);
    m_identity = FileIdentity{status.st_dev, status.st_ino};
}

void WriteLock::letGo() {
    if (m_file)
        ::flock(m_file.number(), LOCK_UN);
    passOn();
}

WriteLock::Guard::~Guard() {
    if (m_lock != nullptr)
        m_lock->letGo();
}

} // namespace quillorn
