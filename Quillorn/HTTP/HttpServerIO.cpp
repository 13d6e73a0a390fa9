#include "HTTP/HttpServerIO.h"

#include "HTTP/HttpErrors.h"
#include "HTTP/InnerWriteContext.h"
#include "HTTP/Socket.h"
#include "Platform/SystemLog.h"

#include <cerrno>
#include <chrono>
#include <condition_variable>
#include <fmt/core.h>
#include <unordered_set>
#include <utility>

namespace quillorn {

namespace {

constexpr int backlog = 128;
constexpr std::chrono::milliseconds pauseWithoutResources{50};

// What a client may still send behind an answer that ends the connection. More costs it the answer, perhaps; a slow
// one holds no more than an idle connection does.
constexpr std::size_t maximumDropped = 512 << 20;
constexpr std::chrono::seconds patienceForInput{1};

/// The connection died in the queue, or the network did for a moment; the next accept may well succeed.
bool concernsOneConnection(int error) {
    switch (error) {
    case EINTR:
    case ECONNABORTED:
    case EPROTO:
    case EPERM: // a packet filter's verdict
    case ENETDOWN:
    case ENETUNREACH:
    case EHOSTDOWN:
    case EHOSTUNREACH:
    case ENOPROTOOPT:
#ifdef ENONET
    case ENONET:
#endif
        return true;
    default:
        return false;
    }
}

/// Passes when something else lets go of what is scarce. The connection stays in the queue until then.
bool isLackOfResources(int error) {
    return error == EMFILE || error == ENFILE || error == ENOBUFS || error == ENOMEM;
}

} // namespace

/// What belongs to one start: workers of an earlier one that are still on their way out never meet the next one's.
struct HttpServerIO::Run {
    explicit Run(Socket socket) : listener(std::move(socket)) {}

    /// False when the run has ended and the socket is not to be served.
    bool add(Socket& socket) {
        const std::lock_guard lock(mutex);
        return operating && sockets.insert(&socket).second;
    }

    void remove(Socket& socket) {
        const std::lock_guard lock(mutex);
        sockets.erase(&socket);
    }

    /// Only interrupts: the workers close what they own, since a descriptor closed under a reading thread may be
    /// another connection's by the time it reads.
    void end() {
        std::unique_lock lock(mutex);
        operating = false;
        for (const Socket* socket : sockets)
            socket->interrupt();
        sockets.clear();
        listener.interrupt();
        changed.notify_all();
        changed.wait(lock, [this] { return !accepting; });
    }

    /// Called by the accept loop, as the last thing it does here.
    void closeListener() {
        const std::lock_guard lock(mutex);
        listener.close();
        accepting = false;
        changed.notify_all();
    }

    void pause() {
        std::unique_lock lock(mutex);
        changed.wait_for(lock, pauseWithoutResources, [this] { return !operating; });
    }

    std::mutex mutex; // guards `sockets`, `accepting` and the closing of `listener`
    std::condition_variable changed;
    Socket listener;
    std::unordered_set<Socket*> sockets; // those being served; each leaves before it is closed
    std::atomic<bool> operating = true;
    bool accepting = true;
};

struct HttpServerIO::Connection {
    Socket& socket;
    std::optional<std::string> address{};
    bool bodyIsUnread = false; // of the last request
};

HttpServerIO::HttpServerIO(SystemLog& log, std::string version) : m_log(log), m_version(std::move(version)) {}

HttpServerIO::~HttpServerIO() {
    finish();
}

void HttpServerIO::finish() {
    stop();
    m_workers.finish();
}

void HttpServerIO::start(std::uint16_t port, bool forceIPv4) {
    const std::lock_guard lock(m_mutex);
    if (operating())
        return;
    m_state = HttpServerIOState::starting;
    auto run = std::make_shared<Run>(
        Socket::listenSocket(port, forceIPv4, backlog, forceIPv4 ? listenAddressIPv4 : listenAddressIPv6));
    m_workers.submit([this, run] { acceptLoop(run); });
    m_run = std::move(run);
    m_state = HttpServerIOState::running;
}

void HttpServerIO::stop() {
    if (const auto run = currentRun())
        stop(run);
}

void HttpServerIO::stop(const std::shared_ptr<Run>& run) {
    {
        const std::lock_guard lock(m_mutex);
        if (!operating() || m_run != run)
            return;
        m_state = HttpServerIOState::stopping;
    }
    run->end();
    const std::lock_guard lock(m_mutex);
    if (m_state == HttpServerIOState::stopping && m_run == run)
        m_state = HttpServerIOState::stopped;
}

std::shared_ptr<HttpServerIO::Run> HttpServerIO::currentRun() const {
    const std::lock_guard lock(m_mutex);
    return m_run;
}

std::uint16_t HttpServerIO::port() const {
    const auto run = currentRun();
    if (!run)
        return Socket().boundPort();
    const std::lock_guard lock(run->mutex);
    return run->listener.boundPort();
}

bool HttpServerIO::isIPv4() const {
    const auto run = currentRun();
    if (!run)
        return Socket().isIPv4();
    const std::lock_guard lock(run->mutex);
    return run->listener.isIPv4();
}

std::optional<HttpResponse> HttpServerIO::refusal(const HttpRequest&) const {
    return std::nullopt;
}

HttpRouter::Match HttpServerIO::dispatch(const HttpRequest&) const {
    return {{}, [](const HttpRequest&) { return HttpResponse::notFound(); }};
}

void HttpServerIO::acceptLoop(const std::shared_ptr<Run>& run) {
    while (run->operating) {
        try {
            const auto client = std::make_shared<Socket>(run->listener.acceptClient());
            m_workers.submit([this, run, client] { serve(run, client); });
        } catch (const SocketError& error) {
            if (isLackOfResources(error.errorNumber()))
                run->pause();
            else if (!concernsOneConnection(error.errorNumber()))
                break;
        } catch (const std::exception&) {
            // No thread or no memory for this connection. It is closed by now; others may fare better.
        }
    }
    const bool failed = run->operating;
    run->closeListener();
    stop(run);
    if (failed && onFailure)
        onFailure();
}

void HttpServerIO::serve(const std::shared_ptr<Run>& run, const std::shared_ptr<Socket>& socket) {
    if (!run->add(*socket))
        return;
    try {
        handleConnection(*run, *socket);
    } catch (...) {
        // A malformed request, a peer that left and want of memory all end the connection in silence.
    }
    run->remove(*socket);
    socket->close();
}

void HttpServerIO::handleConnection(const Run& run, Socket& socket) const {
    Connection connection{.socket = socket};
    try {
        connection.address = socket.peerAddress();
    } catch (const SocketError&) {
        // No IPv4 peer: requests then have no address.
    }
    while (run.operating && handleRequest(run, connection)) {
    }
    // To close on unread input is to reset the connection: the client loses what it has not yet read of the answer.
    if (run.operating && (connection.bodyIsUnread || socket.hasUnread())) {
        socket.endWriting();
        socket.drain(maximumDropped, patienceForInput);
    }
}

/// Whether another request may follow.
bool HttpServerIO::handleRequest(const Run& run, Connection& connection) const {
    const HttpParser parser;
    HttpRequest request = parser.readHead(connection.socket);
    request.address = connection.address;
    auto response = orFailure(request, [&] { return refusal(request); });
    if (!response) {
        parser.readBody(connection.socket, request);
        response = orFailure(request, [&] { return answer(request); });
    }
    connection.bodyIsUnread = promisesBody(request) && request.body.empty();
    if (!run.operating)
        return false;
    try {
        const bool keepAlive = supportsKeepAlive(request.headers) && !connection.bodyIsUnread;
        return respond(run, connection.socket, *response, keepAlive);
    } catch (const std::exception& error) {
        m_log.log(fmt::format("Failed to send response: {}", error.what()));
        return false;
    }
}

HttpResponse HttpServerIO::answer(HttpRequest& request) const {
    HttpRouter::Match match = dispatch(request);
    request.params = std::move(match.params);
    return match.handler(request);
}

std::optional<HttpResponse> HttpServerIO::orFailure(const HttpRequest& request, const Step& step) const {
    try {
        return step();
    } catch (const std::exception& error) {
        m_log.log(fmt::format("Handler of {} {} failed: {}", request.method, request.path, error.what()));
    } catch (...) {
        m_log.log(fmt::format("Handler of {} {} failed", request.method, request.path));
    }
    return HttpResponse::internalServerError();
}

bool HttpServerIO::respond(const Run& run, Socket& socket, const HttpResponse& response, bool keepAlive) const {
    if (!run.operating)
        return false;
    const HttpResponse::Content content = response.content();
    const bool keepsConnection = keepAlive && content.length != -1;
    std::string head = fmt::format("HTTP/1.1 {} {}\r\n", response.statusCode(), response.reasonPhrase());
    if (content.length >= 0)
        head += fmt::format("Content-Length: {}\r\n", content.length);
    const HttpResponse::Headers headers = response.responseHeaders(m_version);
    if (!headers.contains("Connection"))
        head += keepsConnection ? "Connection: keep-alive\r\n" : "Connection: close\r\n";
    for (const auto& [name, value] : headers)
        head.append(name).append(": ").append(value).append("\r\n");
    head += "\r\n";

    InnerWriteContext writer(socket, std::move(head));
    if (content.write) {
        try {
            content.write(writer);
        } catch (const SocketError&) {
            throw;
        } catch (...) {
            writer.flush(); // the client gets what the body had come to
            throw;
        }
    }
    writer.flush();
    if (content.length == -1)
        socket.endWriting(); // the client waits for that, and not for the release of all that the body held
    return keepsConnection;
}

} // namespace quillorn
