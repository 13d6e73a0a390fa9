#pragma once

#include "Platform/AtomicFile.h"

#include <optional>

namespace quillorn {

class Paths;
class SystemLog;

/// Which of several processes on the user's store shows notifications: the first that has one to show, until it ends or
/// can't show any more. All of them are ready to, so that nothing is lost when that one goes.
class NotificationTurn {
  public:
    /// Both must outlive it.
    NotificationTurn(const Paths& paths, SystemLog& log) : m_paths(paths), m_log(log) {}

    /// Whether it is this process's turn, which it stays from then on.
    bool take();
    void giveBack() { m_lock.reset(); }

  private:
    const Paths& m_paths;
    SystemLog& m_log;
    std::optional<FileLock> m_lock;
};

} // namespace quillorn
