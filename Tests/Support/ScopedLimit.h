#pragma once

#include <csignal>
#include <sys/resource.h>

namespace quillorn {

/// Sanitizers take memory of their own, far beyond what the program does.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
inline constexpr bool isSanitized = true;
#else
inline constexpr bool isSanitized = false;
#endif

/// A lower soft limit of this process, one of setrlimit(), as long as the object lives.
class ScopedLimit {
  public:
    ScopedLimit(int resource, rlim_t limit) : m_resource(resource) {
        getrlimit(m_resource, &m_before);
        const rlimit lowered{.rlim_cur = limit, .rlim_max = m_before.rlim_max};
        setrlimit(m_resource, &lowered);
    }
    ~ScopedLimit() { setrlimit(m_resource, &m_before); }
    ScopedLimit(const ScopedLimit&) = delete;
    ScopedLimit& operator=(const ScopedLimit&) = delete;

    const rlimit& before() const { return m_before; }

  private:
    const int m_resource;
    rlimit m_before{};
};

/// No file or socket can be opened.
struct NoDescriptors {
    ScopedLimit descriptors{RLIMIT_NOFILE, 0};
};

/// Keeps the files of this process from growing: a disk without space, as far as SQLite can tell.
struct FullDisk {
    FullDisk() { std::signal(SIGXFSZ, SIG_IGN); }

    ScopedLimit files{RLIMIT_FSIZE, 4096};
};

} // namespace quillorn
