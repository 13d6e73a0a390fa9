#include "Platform/Leftovers.h"

#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <mutex>
#include <pthread.h>
#include <set>
#include <sys/file.h>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>
#include <utility>

namespace quillorn {

namespace fs = std::filesystem;

namespace {

/// A signal is the process's, and comes without a word of who is at work; so this list is the process's too.
struct List {
    std::mutex mutex;
    std::multiset<fs::path> paths;
};

List& list() {
    static List all;
    return all;
}

} // namespace

Leftover::Leftover(fs::path path) : m_path(std::move(path)) {
    const std::lock_guard lock(list().mutex);
    list().paths.insert(m_path);
}

Leftover::~Leftover() {
    const std::lock_guard lock(list().mutex);
    list().paths.erase(list().paths.find(m_path));
}

void endBySignal(int signal) {
    // Held to the end: nothing new is made meanwhile.
    const std::lock_guard lock(list().mutex);
    constexpr int mostTries = 100;
    for (const fs::path& path : list().paths) {
        // Whoever is still at work in a folder may put a file into it while it is emptied.
        std::error_code failed;
        for (int tries = 0; tries < mostTries && (tries == 0 || failed); ++tries)
            fs::remove_all(path, failed);
    }
    std::signal(signal, SIG_DFL);
    sigset_t signals;
    sigemptyset(&signals);
    sigaddset(&signals, signal);
    pthread_sigmask(SIG_UNBLOCK, &signals, nullptr);
    std::raise(signal);
    ::_exit(128 + signal);
}

bool claim(const FileDescriptor& made) {
    if (::flock(made.number(), LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK)
        return false;
    struct stat status{};
    return ::fstat(made.number(), &status) != 0 || status.st_nlink > 0;
}

void removeIfAbandoned(const fs::path& path) noexcept {
    const FileDescriptor opened(::open(path.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
    struct stat status{};
    if (!opened || ::fstat(opened.number(), &status) != 0 || status.st_uid != ::geteuid())
        return;
    if (::flock(opened.number(), LOCK_EX | LOCK_NB) != 0)
        return; // in use, or on a file system without locks, where nobody can tell
    std::error_code ignored;
    fs::remove_all(path, ignored);
}

} // namespace quillorn
