#pragma once

#include "Support/ChildProcess.h"
#include "Support/TemporaryFolder.h"

#include <memory>
#include <string>

namespace quillorn {

/// A message bus of its own, at an address that stays the same over its restarts. It starts none of this machine's
/// services.
class BusDaemon {
  public:
    BusDaemon() {
        writeFile(m_folder / "bus.conf", "<busconfig><type>session</type><listen>" + address() +
                                             "</listen><policy context='default'><allow send_destination='*'/>"
                                             "<allow receive_sender='*'/><allow own='*'/></policy></busconfig>");
        start();
    }

    std::string address() const { return "unix:path=" + (m_folder / "bus").string(); }
    void start() {
        m_daemon = std::make_unique<ChildProcess>(
            ChildProcess::Launch{"/usr/bin/dbus-daemon",
                                 {"--config-file=" + (m_folder / "bus.conf").string(), "--nofork", "--print-address"}});
        m_daemon->answer(); // it listens from then on
    }
    void stop() { m_daemon.reset(); }

  private:
    TemporaryFolder m_folder;
    std::unique_ptr<ChildProcess> m_daemon;
};

} // namespace quillorn
