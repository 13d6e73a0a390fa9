#pragma once

#include "Support/ChildProcess.h"
#include "Support/TemporaryFolder.h"

#include <memory>
#include <string>

namespace quillorn {

/// A message bus of its own, at an address that stays the same over its restarts.
class BusDaemon {
  public:
    BusDaemon() { start(); }

    std::string address() const { return "unix:path=" + (m_folder / "bus").string(); }
    void start() {
        m_daemon = std::make_unique<ChildProcess>(ChildProcess::Launch{
            "/usr/bin/dbus-daemon", {"--session", "--nofork", "--print-address", "--address=" + address()}});
        m_daemon->answer(); // it listens from then on
    }
    void stop() { m_daemon.reset(); }

  private:
    TemporaryFolder m_folder;
    std::unique_ptr<ChildProcess> m_daemon;
};

} // namespace quillorn
