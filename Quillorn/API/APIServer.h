#pragma once

#include "API/ListCache.h"
#include "HTTP/HttpRouter.h"
#include "Platform/MainQueue.h"
#include "Platform/Observers.h"
#include "Platform/Task.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <thread>

namespace quillorn {

class Background;
class Clock;
class HttpServer;
class ModelContainer;
class Paths;
class SystemLog;
class Text;

/// What the server needs of the outside world. Referred to, not owned.
struct APIServerEnvironment {
    ModelContainer& container;
    const Clock& clock;
    const Text& text;
    const Paths& paths;
    SystemLog& log;
    MainQueue& mainQueue;
    Background& background;
    /// Of the program, for the `Server` header.
    std::string version;
};

/// The local server: on which address and with which guards it listens, what it answers, and its state for the shells.
/// One instance lives as long as the application. Everything here belongs to the main thread.
class APIServer {
  public:
    static constexpr std::uint16_t defaultPort = 18080;

    struct ListenAddresses {
        std::optional<std::string> ipv4{};
        std::optional<std::string> ipv6{};

        friend bool operator==(const ListenAddresses&, const ListenAddresses&) = default;
    };

    explicit APIServer(APIServerEnvironment environment);
    /// Stops in silence.
    ~APIServer();
    APIServer(const APIServer&) = delete;
    APIServer& operator=(const APIServer&) = delete;

    /// Tells after every change of the state below.
    Observation observe(Observers<>::Handler handler) { return m_observers.add(std::move(handler)); }
    /// Makes, at each start, what answers POST /mcp; without it the server has no /mcp.
    std::function<HttpHandler()> makeMCPHandler;

    /// Opens the socket in the background; the state tells how that went. Port 0 is any that is free. Does nothing
    /// unless the server is stopped.
    void start(std::optional<std::uint16_t> port, bool externalAccess, std::optional<std::string> authKey,
               bool requireAuthLocal);
    /// Returns when the port is free and no handler runs any more.
    void stop();
    void setLastError(std::string text);

    /// True from the start to the stop or failure, also while the socket is being opened.
    bool hasServer() const { return m_attempt != nullptr; }
    /// True once the socket listens.
    bool isRunning() const { return m_isRunning; }
    /// The configured port; after the start that really bound.
    std::uint16_t port() const { return m_port; }
    const std::optional<std::string>& lastError() const { return m_lastError; }
    /// What the rest says was chosen at the last start.
    const ListenAddresses& configuredListenAddresses() const { return m_configuredListenAddresses; }
    bool isExternalAccess() const { return m_isExternalAccess; }
    const std::optional<std::string>& authKey() const { return m_authKey; }

  private:
    /// Lives from a start to its end, so that what was posted for it can tell whether it still matters.
    struct Attempt;

    std::unique_ptr<HttpServer> makeServer(bool requireAuth);
    Task<> open(std::shared_ptr<Attempt> attempt, bool requireAuth);
    void didOpen(std::uint16_t boundPort, bool requireAuth);
    /// `words` are for the user.
    void didFail(const std::string& logLine, const std::string& words);
    void drop();
    void checkThread() const;

    const APIServerEnvironment m_environment;
    const std::thread::id m_mainThread;
    ListCache m_lists;
    std::shared_ptr<Attempt> m_attempt;
    Observers<> m_observers;
    TaskScope m_tasks;
    bool m_isRunning = false;
    std::uint16_t m_port = defaultPort;
    std::optional<std::string> m_lastError;
    ListenAddresses m_configuredListenAddresses;
    bool m_isExternalAccess = false;
    std::optional<std::string> m_authKey;
};

} // namespace quillorn
