#include "Platform/Linux/SystemdBus.h"

#include "Platform/Linux/BusMessages.h"
#include "Platform/Linux/BusRegistrations.h"
#include "Platform/Linux/DescriptorWatch.h"
#include "Platform/MainQueue.h"
#include "Platform/SystemLog.h"

#include <algorithm>
#include <fmt/core.h>
#include <system_error>
#include <systemd/sd-bus.h>

namespace quillorn {

using namespace std::chrono_literals;

struct SystemdBus::Connection : std::enable_shared_from_this<Connection> {
    /// Between two attempts to connect.
    static constexpr std::chrono::milliseconds shortestPause = 500ms;
    static constexpr std::chrono::milliseconds longestPause = 1min;
    /// How many messages are taken before other work of the main queue gets its turn.
    static constexpr int turn = 64;

    Connection(BusKind busKind, std::optional<std::string> busAddress, MainQueue& mainQueue, SystemLog* systemLog)
        : kind(busKind),
          address(std::move(busAddress)),
          queue(mainQueue),
          log(systemLog),
          watch(mainQueue, [this] { process(); }) {}
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;
    ~Connection() {
        if (retry)
            queue.cancel(*retry);
        close();
    }

    void connect();
    int open();
    void process();
    /// Waits for what the library waits for, which is to be called after each use of it.
    void update();
    void lose(int result);
    void close();
    void setConnected(bool value);

    template <typename Registration>
    Observation attach(std::shared_ptr<Registration> registration);

    const BusKind kind;
    const std::optional<std::string> address;
    MainQueue& queue;
    SystemLog* const log;
    sd_bus* bus = nullptr;
    bool isConnected = false;
    bool isFailureKnown = false;
    Observers<bool> connectionObservers;
    std::vector<std::weak_ptr<BusRegistration>> registrations;
    std::chrono::milliseconds pause = shortestPause;
    std::optional<MainQueue::TimerId> retry;
    DescriptorWatch watch;
};

int SystemdBus::Connection::open() {
    if (!address)
        return kind == BusKind::session ? sd_bus_open_user(&bus) : sd_bus_open_system(&bus);
    int result = sd_bus_new(&bus);
    if (result >= 0)
        result = sd_bus_set_address(bus, address->c_str());
    if (result >= 0)
        result = sd_bus_set_bus_client(bus, 1);
    return result >= 0 ? sd_bus_start(bus) : result;
}

void SystemdBus::Connection::connect() {
    if (retry)
        queue.cancel(*std::exchange(retry, std::nullopt));
    if (const int result = open(); result < 0)
        return lose(result);
    for (const auto& each : std::vector(registrations))
        if (const auto registration = each.lock()) {
            try {
                registration->attach(*bus);
            } catch (const BusError& error) {
                if (log)
                    log->log(fmt::format("D-Bus: {}", error.what()));
            }
        }
    update();
}

void SystemdBus::Connection::process() {
    if (bus == nullptr)
        return;
    int result = 1;
    for (int taken = 0; taken < turn && result > 0; ++taken)
        result = sd_bus_process(bus, nullptr);
    if (result < 0)
        return lose(result);
    if (result > 0)
        return queue.post([self = weak_from_this()] {
            if (const auto connection = self.lock())
                connection->process();
        });
    if (!isConnected && sd_bus_is_ready(bus) > 0) {
        pause = shortestPause;
        isFailureKnown = false;
        setConnected(true);
    }
    update();
}

void SystemdBus::Connection::update() {
    if (bus == nullptr)
        return;
    std::uint64_t timeout = 0;
    const int descriptor = sd_bus_get_fd(bus);
    const int events = sd_bus_get_events(bus);
    const int hasTimeout = sd_bus_get_timeout(bus, &timeout);
    // Where the library can't say, processing tells what is wrong.
    const bool isBroken = descriptor < 0 || events < 0 || hasTimeout < 0;
    DescriptorWatch::Wait wait{descriptor, static_cast<short>(std::max(events, 0)), {}};
    if (isBroken)
        wait = {-1, 0, DescriptorWatch::Moment{}};
    else if (timeout != UINT64_MAX)
        wait.until = DescriptorWatch::Moment(std::chrono::microseconds(timeout)); // both count as CLOCK_MONOTONIC does
    watch.waitFor(wait);
}

void SystemdBus::Connection::lose(int result) {
    close();
    if (log && !std::exchange(isFailureKnown, true))
        log->log(fmt::format("D-Bus: no connection to the {} bus: {}", kind == BusKind::session ? "session" : "system",
                             std::generic_category().message(-result)));
    // In the long run together with what else has to be done now and then.
    retry = pause < longestPause ? queue.after(
                                       pause, [this] { connect(); })
                                 : queue.every(longestPause, [this] { connect(); });
    pause = std::min(pause * 2, longestPause);
}

void SystemdBus::Connection::close() {
    watch.waitFor({});
    for (const auto& each : std::vector(registrations))
        if (const auto registration = each.lock())
            registration->detach();
    sd_bus_close_unref(bus);
    bus = nullptr;
    setConnected(false);
}

void SystemdBus::Connection::setConnected(bool value) {
    if (std::exchange(isConnected, value) == value)
        return;
    queue.post([self = weak_from_this(), value] {
        if (const auto connection = self.lock())
            connection->connectionObservers.tell(value);
    });
}

template <typename Registration>
Observation SystemdBus::Connection::attach(std::shared_ptr<Registration> registration) {
    if (bus != nullptr)
        registration->attach(*bus);
    std::erase_if(registrations, [](const auto& each) { return each.expired(); });
    registrations.push_back(registration);
    update();
    // What ends may have something to say to the bus.
    return Observation(std::shared_ptr<void>(
        nullptr, [registration = std::move(registration), self = weak_from_this()](void*) mutable {
            registration.reset();
            if (const auto connection = self.lock())
                connection->update();
        }));
}

SystemdBus::SystemdBus(BusKind kind, std::optional<std::string> address, MainQueue& queue, SystemLog* log)
    : m_connection(std::make_shared<Connection>(kind, std::move(address), queue, log)) {
    m_connection->connect();
}

SystemdBus::~SystemdBus() = default;

bool SystemdBus::isConnected() const {
    return m_connection->isConnected;
}

Observation SystemdBus::observeConnection(PresenceHandler handler) {
    return m_connection->connectionObservers.add(std::move(handler));
}

Observation SystemdBus::call(BusCall call, ReplyHandler handler) {
    const auto pending = std::make_shared<BusPendingCall>(m_connection->queue, std::move(handler));
    if (m_connection->bus == nullptr) {
        pending->detach();
        return Observation(pending);
    }
    try {
        pending->start(*m_connection->bus, call);
    } catch (const BusError& error) {
        pending->fail(error);
    }
    return m_connection->attach(pending);
}

void SystemdBus::send(BusCall call) {
    if (m_connection->bus == nullptr)
        return;
    try {
        const BusMessageHandle message = makeBusCall(*m_connection->bus, call);
        checkBus(sd_bus_message_set_expect_reply(message.get(), 0));
        checkBus(sd_bus_send(m_connection->bus, message.get(), nullptr));
    } catch (const BusError& error) {
        if (m_connection->log)
            m_connection->log->log(fmt::format("D-Bus: {} was not called: {}", call.member, error.what()));
    }
    m_connection->update();
}

Observation SystemdBus::observeSignal(BusSignalRule rule, SignalHandler handler) {
    return m_connection->attach(
        std::make_shared<BusSignalMatch>(m_connection->queue, std::move(rule), std::move(handler)));
}

Observation SystemdBus::observeService(std::string name, PresenceHandler handler) {
    return m_connection->attach(
        std::make_shared<BusServiceWatch>(m_connection->queue, std::move(name), std::move(handler)));
}

Observation SystemdBus::ownName(std::string name, PresenceHandler handler) {
    return m_connection->attach(
        std::make_shared<BusOwnedName>(m_connection->queue, std::move(name), std::move(handler)));
}

Observation SystemdBus::exportObject(std::string path, BusInterface interface) {
    const auto answered = [connection = std::weak_ptr(m_connection)] {
        if (const auto alive = connection.lock())
            alive->update();
    };
    return m_connection->attach(
        std::make_shared<BusExport>(m_connection->queue, std::move(path), std::move(interface), answered));
}

std::unique_ptr<Bus> connectBus(BusKind kind, MainQueue& queue, SystemLog* log) {
    return std::make_unique<SystemdBus>(kind, std::nullopt, queue, log);
}

} // namespace quillorn
