#include "API/APIServer.h"

#include "API/Guards.h"
#include "API/Routes.h"
#include "HTTP/HttpErrors.h"
#include "HTTP/HttpServer.h"
#include "Platform/MainQueue.h"
#include "Platform/SystemLog.h"

#include <cassert>
#include <chrono>
#include <fmt/core.h>
#include <system_error>
#include <utility>

namespace quillorn {

namespace {

constexpr const char* keyMissing = "API server not started: external access and \"require API key\" both need an API "
                                   "key. Set one in Settings.";

/// How long the text of a list is kept at least for those who ask again.
constexpr std::chrono::seconds unusedListTime{30};

constexpr const char* startFailed = "Failed to start API server: ";

} // namespace

APIServer::APIServer(APIServerEnvironment environment)
    : m_environment(std::move(environment)),
      m_mainThread(std::this_thread::get_id()),
      m_lists(m_environment.container),
      m_listTimer(m_environment.mainQueue.every(unusedListTime, [this] { m_lists.dropUnused(); })) {}

APIServer::~APIServer() {
    drop();
    m_environment.mainQueue.cancel(m_listTimer);
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
    m_server = makeServer(wantsAuth);
    open(wantsAuth);
}

void APIServer::stop() {
    checkThread();
    drop();
    m_environment.log.log("API Server stopped");
    changed();
}

void APIServer::setLastError(std::string text) {
    checkThread();
    m_lastError = std::move(text);
    changed();
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

void APIServer::open(bool requireAuth) {
    m_attempt = std::make_shared<Attempt>();
    // The queue may get to the outcome when this start is long over, and this object with it.
    const auto post = [&queue = m_environment.mainQueue,
                       attempt = std::weak_ptr(m_attempt)](std::function<void()> work) {
        queue.post([attempt, work = std::move(work)] {
            if (!attempt.expired())
                work();
        });
    };
    m_server->onFailure = [this, post] {
        post([this] { didFail("API Server failed: the socket was closed", "The server's socket was closed"); });
    };
    try {
        m_opener = std::thread([this, post, requireAuth, port = m_port, &server = *m_server] {
            try {
                server.start(port, true);
                post([this, requireAuth, bound = server.port()] { didOpen(bound, requireAuth); });
            } catch (const SocketError& error) {
                post([this, fault = std::string(error.what()),
                      words = fmt::format("Can't listen on port {}: {}", port, error.text())] {
                    didFail(startFailed + fault, words);
                });
            } catch (const std::exception& error) {
                post([this, fault = std::string(error.what())] { didFail(startFailed + fault, fault); });
            }
        });
    } catch (const std::system_error& error) {
        didFail(startFailed + std::string(error.what()), error.what());
    }
}

void APIServer::didOpen(std::uint16_t boundPort, bool requireAuth) {
    m_opener.join();
    m_isRunning = true;
    m_port = boundPort;
    m_lastError.reset();
    const char* host = m_isExternalAccess ? "0.0.0.0" : "localhost";
    m_environment.log.log(fmt::format("API Server started on http://{}:{}{}", host, m_port,
                                      m_isExternalAccess ? " (external access)" : ""));
    if (makeMCPHandler)
        m_environment.log.log(fmt::format("MCP endpoint available at http://{}:{}/mcp{}", host, m_port,
                                          requireAuth ? " (auth required)" : ""));
    changed();
}

void APIServer::didFail(const std::string& logLine, const std::string& words) {
    drop();
    m_lastError = words;
    m_environment.log.log(logLine);
    changed();
}

/// Whatever the state was, afterwards it is stopped.
void APIServer::drop() {
    m_attempt.reset();
    if (m_opener.joinable())
        m_opener.join();
    m_server.reset();
    m_isRunning = false;
}

void APIServer::changed() const {
    if (onChange)
        onChange();
}

void APIServer::checkThread() const {
    assert(std::this_thread::get_id() == m_mainThread);
}

} // namespace quillorn
