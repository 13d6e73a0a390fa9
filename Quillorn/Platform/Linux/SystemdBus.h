#pragma once

#include "Platform/Bus.h"

#include <optional>

namespace quillorn {

/// A bus by sd-bus. The connection is used on the main thread alone; a DescriptorWatch tells when it has something.
class SystemdBus final : public Bus {
  public:
    /// An address such as "unix:path=/run/dbus/system_bus_socket", else the bus of that kind.
    SystemdBus(BusKind kind, std::optional<std::string> address, MainQueue& queue, SystemLog* log);
    ~SystemdBus() override;

    bool isConnected() const override;
    Observation observeConnection(PresenceHandler handler) override;
    Observation call(BusCall call, ReplyHandler handler) override;
    void send(BusCall call) override;
    Observation observeSignal(BusSignalRule rule, SignalHandler handler) override;
    Observation observeService(std::string name, PresenceHandler handler) override;
    Observation ownName(std::string name, PresenceHandler handler) override;
    Observation exportObject(std::string path, BusInterface interface) override;

    struct Connection;

  private:
    std::shared_ptr<Connection> m_connection;
};

} // namespace quillorn
