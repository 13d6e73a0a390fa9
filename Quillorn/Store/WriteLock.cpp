#include "Store/WriteLock.h"

#include "Store/StoreError.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <fmt/core.h>
#include <sys/file.h>
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
    m_descriptor = ::open(file->c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
    if (m_descriptor < 0)
        throw StoreError(
            fmt::format("Can't open the lock file {}: {}", file->string(), std::generic_category().message(errno)));
}

WriteLock::~WriteLock() {
    if (m_descriptor >= 0)
        ::close(m_descriptor);
}

WriteLock::Guard WriteLock::acquire(std::chrono::milliseconds patience) {
    const auto deadline = std::chrono::steady_clock::now() + patience;
    {
        std::unique_lock lock(m_mutex);
        if (!m_released.wait_until(lock, deadline, [this] { return !m_isHeld; }))
            throw StoreError(busy);
        m_isHeld = true;
    }
    try {
        if (m_descriptor >= 0)
            lockFile(deadline);
    } catch (...) {
        release();
        throw;
    }
    return Guard(*this);
}

void WriteLock::lockFile(std::chrono::steady_clock::time_point deadline) {
    // flock can't wait with a limit, and a stopped process must not hang this one: so try, with growing pauses.
    auto pause = std::chrono::microseconds(50);
    while (::flock(m_descriptor, LOCK_EX | LOCK_NB) != 0) {
        if (errno != EWOULDBLOCK && errno != EINTR)
            throw StoreError(fmt::format("Can't lock the store: {}", std::generic_category().message(errno)));
        if (std::chrono::steady_clock::now() >= deadline)
            throw StoreError(busy);
        std::this_thread::sleep_for(pause);
        pause = std::min<std::chrono::microseconds>(pause * 2, 2ms);
    }
}

WriteLock::Guard::~Guard() {
    if (m_lock == nullptr)
        return;
    if (m_lock->m_descriptor >= 0)
        ::flock(m_lock->m_descriptor, LOCK_UN);
    m_lock->release();
}

void WriteLock::release() {
    {
        const std::lock_guard lock(m_mutex);
        m_isHeld = false;
    }
    m_released.notify_one();
}

} // namespace quillorn
