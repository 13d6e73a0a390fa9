#include "Platform/FileWatch.h"

#include "Platform/FileDescriptor.h"

#include <array>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstddef>
#include <cstdint>
#include <poll.h>
#include <pthread.h>
#include <string>
#include <sys/eventfd.h>
#include <sys/inotify.h>
#include <system_error>
#include <thread>
#include <unistd.h>
#include <utility>

namespace quillorn {

namespace {

/// Who writes all the time is told of together.
constexpr std::chrono::milliseconds pause{10};

/// The signals of the process are for the threads that wait for them.
class SignalsBlocked {
  public:
    SignalsBlocked() {
        sigset_t all;
        sigfillset(&all);
        pthread_sigmask(SIG_SETMASK, &all, &m_former);
    }
    ~SignalsBlocked() { pthread_sigmask(SIG_SETMASK, &m_former, nullptr); }
    SignalsBlocked(const SignalsBlocked&) = delete;
    SignalsBlocked& operator=(const SignalsBlocked&) = delete;

  private:
    sigset_t m_former{};
};

/// Watches the folder, since a file may be replaced.
class FolderWatch final : public FileWatch {
  public:
    FolderWatch(std::string name, std::function<void()> changed, FileDescriptor events, FileDescriptor end)
        : m_name(std::move(name)),
          m_changed(std::move(changed)),
          m_events(std::move(events)),
          m_end(std::move(end)) {
        const SignalsBlocked blocked;
        m_thread = std::thread([this] { run(); });
    }
    ~FolderWatch() override {
        const std::uint64_t one = 1;
        [[maybe_unused]] const auto written = ::write(m_end.number(), &one, sizeof one);
        m_thread.join();
    }

  private:
    void run() const {
        while (!endsWithin(-1, m_events.number())) {
            if (!hasNews())
                continue;
            m_changed();
            if (endsWithin(static_cast<int>(pause.count()), -1))
                return;
        }
    }

    /// Waits that many milliseconds, without a limit where negative, for the end or for `other`; whether it is the end.
    bool endsWithin(int milliseconds, int other) const {
        std::array<pollfd, 2> waited{pollfd{m_end.number(), POLLIN, 0}, pollfd{other, POLLIN, 0}};
        const int count = ::poll(waited.data(), waited.size(), milliseconds);
        return (count < 0 && errno != EINTR) || (waited[0].revents & POLLIN) != 0 || (waited[1].revents & POLLERR) != 0;
    }

    /// Reads what has come; whether some of it was about the file.
    bool hasNews() const {
        alignas(inotify_event) std::array<std::byte, 4096> buffer{};
        bool found = false;
        for (ssize_t size = 0; (size = ::read(m_events.number(), buffer.data(), buffer.size())) > 0;) {
            for (ssize_t at = 0; at < size;) {
                const auto* event = reinterpret_cast<const inotify_event*>(buffer.data() + at);
                // Without a name it is about the folder itself, or events were lost.
                found |= event->len == 0 || m_name == event->name;
                at += static_cast<ssize_t>(sizeof *event + event->len);
            }
        }
        return found;
    }

    std::string m_name;
    std::function<void()> m_changed;
    FileDescriptor m_events;
    FileDescriptor m_end;
    std::thread m_thread;
};

} // namespace

std::unique_ptr<FileWatch> watchFile(const std::filesystem::path& file, std::function<void()> changed) {
    FileDescriptor events(::inotify_init1(IN_NONBLOCK | IN_CLOEXEC));
    FileDescriptor end(::eventfd(0, EFD_CLOEXEC));
    if (!events || !end)
        return nullptr;
    constexpr std::uint32_t mask = IN_MODIFY | IN_CREATE | IN_DELETE | IN_MOVED_FROM | IN_MOVED_TO;
    if (::inotify_add_watch(events.number(), file.parent_path().c_str(), mask) < 0)
        return nullptr;
    try {
        return std::make_unique<FolderWatch>(file.filename().string(), std::move(changed), std::move(events),
                                             std::move(end));
    } catch (const std::system_error&) {
        return nullptr; // no thread is to be had
    }
}

} // namespace quillorn
