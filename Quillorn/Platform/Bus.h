#pragma once

#include "Platform/BusValue.h"
#include "Platform/Observers.h"

#include <chrono>
#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <variant>
#include <vector>

namespace quillorn {

class MainQueue;
class SystemLog;

/// What a call, a reply or a signal carries.
struct BusMessage {
    /// Of all values, one complete type after the other: "susa{sv}".
    std::string signature{};
    BusValue::List values{};
};

/// A failure as it travels on the bus: a name such as "org.freedesktop.DBus.Error.UnknownMethod", and words.
class BusError : public std::runtime_error {
  public:
    BusError(std::string name, const std::string& words) : std::runtime_error(words), m_name(std::move(name)) {}
    const std::string& name() const { return m_name; }

  private:
    std::string m_name;
};

class BusReply {
  public:
    BusReply(BusMessage message) : m_reply(std::move(message)) {}
    BusReply(BusError error) : m_reply(std::move(error)) {}

    /// Null when there is a message.
    const BusError* error() const { return std::get_if<BusError>(&m_reply); }
    /// Throws the error when there is one.
    const BusMessage& message() const;

  private:
    std::variant<BusMessage, BusError> m_reply;
};

struct BusCall {
    std::string service;
    std::string path;
    std::string interface;
    std::string member;
    BusMessage arguments{};
    std::chrono::milliseconds timeout{25'000};
};

/// Which signals: each part may be empty for any.
struct BusSignalRule {
    std::string sender{};
    std::string path{};
    std::string interface{};
    std::string member{};
};

struct BusSignal {
    std::string path;
    std::string member;
    BusMessage message;
};

/// A method of an exported object.
struct BusMethod {
    /// One complete type each.
    struct Argument {
        std::string signature;
        std::string name;
    };
    /// Answers a call, at once or later; only the first answer counts, and a call of which the last copy is dropped
    /// without one is answered as failed.
    using Responder = std::function<void(BusReply)>;

    std::string name;
    std::vector<Argument> in;
    std::vector<Argument> out;
    /// The bus has checked that the message has the signature of `in`. What it throws is logged and answers the call:
    /// a BusError as it is, anything else as org.freedesktop.DBus.Error.Failed.
    std::function<void(const BusMessage&, Responder)> handler;
};

struct BusInterface {
    std::string name;
    std::vector<BusMethod> methods;
};

/// A connection to a message bus of the machine. Belongs to the main thread, which it never holds up: everything
/// arrives on the main queue.
///
/// A bus that isn't there, or goes, is tried again, with growing pauses up to a minute. Signals, services, names and
/// objects are asked for once and hold for every connection; calls fail while there is none. Each lasts as long as its
/// token, and nothing arrives after that.
class Bus {
  public:
    using ReplyHandler = std::function<void(const BusReply&)>;
    using SignalHandler = std::function<void(const BusSignal&)>;
    using PresenceHandler = std::function<void(bool)>;

    virtual ~Bus() = default;

    virtual bool isConnected() const = 0;
    /// Tells each change of isConnected().
    [[nodiscard]] virtual Observation observeConnection(PresenceHandler handler) = 0;

    /// The reply arrives once, an error after the timeout at the latest. A service that can be started by the bus is.
    [[nodiscard]] virtual Observation call(BusCall call, ReplyHandler handler) = 0;
    /// A call whose outcome does not matter.
    virtual void send(BusCall call) = 0;
    [[nodiscard]] virtual Observation observeSignal(BusSignalRule rule, SignalHandler handler) = 0;
    /// Tells whether somebody has that name: once it is known, and at each change. A service that another process takes
    /// over goes and comes. Without a connection nobody has it.
    [[nodiscard]] virtual Observation observeService(std::string name, PresenceHandler handler) = 0;

    /// Takes a name for this process. Where another one has it, this one waits in line until it is free. Tells whether
    /// it is ours: once that is known, and at each change.
    [[nodiscard]] virtual Observation ownName(std::string name, PresenceHandler handler) = 0;
    /// Answers calls to the methods, and questions for their description.
    [[nodiscard]] virtual Observation exportObject(std::string path, BusInterface interface) = 0;
};

enum class BusKind {
    /// Of the user's login: DBUS_SESSION_BUS_ADDRESS, else the socket in XDG_RUNTIME_DIR.
    session,
    /// Of the machine: DBUS_SYSTEM_BUS_ADDRESS, else the usual socket.
    system,
};

/// Begins to connect; a bus that can't be reached is logged once, when `log` is given. The queue must outlive it.
std::unique_ptr<Bus> connectBus(BusKind kind, MainQueue& queue, SystemLog* log);

} // namespace quillorn
