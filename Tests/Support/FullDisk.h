#pragma once

#include <csignal>
#include <sys/resource.h>

namespace quillorn {

/// Keeps the files of this process from growing: a disk without space, as far as SQLite can tell.
class FullDisk {
  public:
    FullDisk() {
        std::signal(SIGXFSZ, SIG_IGN);
        getrlimit(RLIMIT_FSIZE, &m_before);
        rlimit none{.rlim_cur = 4096, .rlim_max = m_before.rlim_max};
        setrlimit(RLIMIT_FSIZE, &none);
    }
    ~FullDisk() { setrlimit(RLIMIT_FSIZE, &m_before); }
    FullDisk(const FullDisk&) = delete;
    FullDisk& operator=(const FullDisk&) = delete;

  private:
    rlimit m_before{};
};

} // namespace quillorn
