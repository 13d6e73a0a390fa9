#include "API/APIServer.h"

#include "API/Guards.h"
#include "API/Routes.h"
#include "HTTP/HttpErrors.h"
#include "HTTP/HttpServer.h"
#include "Platform/Background.h"
#include "Platform/MainQueue.h"
#include "Platform/SystemLog.h"

#include <cassert>
#include <cerrno>
#include <chrono>
#include <fmt/core.h>
#include <latch>
#include <system_error>
#include <utility>

namespace quillorn {

namespace {

constexpr const char* keyMissing = "API server not started: external access and \"require API key\" both need an API "
                                   "key. Set one in Settings.";

constexpr const char* startFailed = "Failed to start API server: ";

/// What to do, behind the error.
std::string adviceFor(const SocketError& error, std::uint16_t port) {
    if (error.errorNumber() != EADDRINUSE)
        return {};
    return fmt::format("; another program listens on port {}: stop it, or choose another port", port);
}

} // namespace

struct APIServer::Attempt {
    explicit Attempt(std::unique_ptr<HttpServer> made) : server(std::move(made)) {}

    std::unique_ptr<HttpServer> server;
    /// Down as soon as the opening has come to its end, whatever that is.
    std::latch opening{1};
};

APIServer::APIServer(APIServerEnvironment environment)
    : m_environment(std::move(environment)),
      m_mainThread(std::this_thread::get_id()),
      m_lists(m_environment.container, m_environment.mainQueue) {}

APIServer::~APIServer() {
    drop();
}

void APIServer::start(std::optional<std::uint16_t> port, bool externalAccess, std::optional<std::string> authKey,
                      bool requireAuthLocal) {
    checkThread();
    if (m_isRunning || hasServer())
        return;
    m_port = port.value_or(m_port);
    m_isExternalAccess = externalAccess;
    m_authKey = std::move(authKey);
    const bool wantsAuth = externalAccess || requireAuthLocal;
    if (wantsAuth && (!m_authKey || m_authKey->empty()))
        return setLastError(keyMissing);
    m_configuredListenAddresses =
        externalAccess ? ListenAddresses{"0.0.0.0", "::"} : ListenAddresses{"127.0.0.1", "::1"};
    m_attempt = std::make_shared<Attempt>(makeServer(wantsAuth));
    m_tasks.start(open(m_attempt, wantsAuth));
}

void APIServer::stop() {
    checkThread();
    drop();
    m_environment.log.log("API Server stopped");
    m_observers.tell();
}

void APIServer::setLastError(std::string text) {
    checkThread();
    m_lastError = std::move(text);
    m_observers.tell();
}

std::unique_ptr<HttpServer> APIServer::makeServer(bool requireAuth) {
    auto server = std::make_unique<HttpServer>(m_environment.log, m_environment.version);
    server->listenAddressIPv4 = m_configuredListenAddresses.ipv4;
    server->listenAddressIPv6 = m_configuredListenAddresses.ipv6;
    if (!m_isExternalAccess)
        server->middleware.push_back(hostGuard());
    if (requireAuth)
        server->middleware.push_back(bearerGuard(*m_authKey));
    auto routes =
        apiRoutes(m_environment.container, m_environment.clock, m_environment.text, m_environment.paths, m_lists);
    if (makeMCPHandler)
        for (Route& route : mcpRoutes(makeMCPHandler()))
            routes.push_back(std::move(route));
    for (Route& route : routes)
        server->router.registerRoute(route.method, route.path, std::move(route.handler));
    return server;
}

Task<> APIServer::open(std::shared_ptr<Attempt> attempt, bool requireAuth) {
    attempt->server->onFailure = [this, &queue = m_environment.mainQueue, current = std::weak_ptr(attempt)] {
        // The queue may get to it when this start is long over, and this object with it.
        queue.post([this, current] {
            if (!current.expired())
                didFail("API Server failed: the socket was closed", "The server's socket was closed");
        });
    };
    std::optional<std::uint16_t> bound;
    std::string fault;
    std::string words;
    try {
        auto opening = [attempt, port = m_port](const std::stop_token&) {
            const auto countDown = [](std::latch* latch) { latch->count_down(); };
            const std::unique_ptr<std::latch, decltype(countDown)> atEnd(&attempt->opening, countDown);
            attempt->server->start(port, true);
            return attempt->server->port();
        };
        // From here on nothing but the background holds on to the attempt, so that it can come to an end.
        attempt.reset();
        bound = co_await m_environment.background.run(std::move(opening));
    } catch (const SocketError& error) {
        fault = error.what() + adviceFor(error, m_port);
        words = fmt::format("Can't listen on port {}: {}", m_port, error.text());
    } catch (const std::exception& error) {
        fault = words = error.what();
    }
    if (bound)
        didOpen(*bound, requireAuth);
    else
        didFail(startFailed + fault, words);
}

void APIServer::didOpen(std::uint16_t boundPort, bool requireAuth) {
    m_isRunning = true;
    m_port = boundPort;
    m_lastError.reset();
    const char* host = m_isExternalAccess ? "0.0.0.0" : "localhost";
    m_environment.log.log(fmt::format("API Server started on http://{}:{}{}", host, m_port,
                                      m_isExternalAccess ? " (external access)" : ""));
    if (makeMCPHandler)
        m_environment.log.log(fmt::format("MCP endpoint available at http://{}:{}/mcp{}", host, m_port,
                                          requireAuth ? " (auth required)" : ""));
    m_environment.log.log(fmt::format("API documentation at http://{}:{}/docs", host, m_port));
    m_observers.tell();
}

void APIServer::didFail(const std::string& logLine, const std::string& words) {
    drop();
    m_lastError = words;
    m_environment.log.log(logLine);
    m_observers.tell();
}

/// Whatever the state was, afterwards it is stopped.
void APIServer::drop() {
    m_isRunning = false;
    const auto attempt = std::exchange(m_attempt, nullptr);
    if (!attempt)
        return;
    // A moment at the most; then the port is free.
    attempt->opening.wait();
    attempt->server.reset();
}

void APIServer::checkThread() const {
    assert(std::this_thread::get_id() == m_mainThread);
}

} // namespace quillorn
