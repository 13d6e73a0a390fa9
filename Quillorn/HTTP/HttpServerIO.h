#pragma once

#include "HTTP/HttpParser.h"
#include "HTTP/HttpRouter.h"
#include "HTTP/WorkerPool.h"

#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>

namespace quillorn {

class Socket;
class SystemLog;

enum class HttpServerIOState : std::int32_t { starting = 0, running = 1, stopping = 2, stopped = 3 };

/// Listens, and serves each connection on a worker of its own: blocking, without time-outs. Knows nothing of routes.
class HttpServerIO {
  public:
    /// `version` goes into the `Server` header. `log` gets a line for each handler and each response that failed.
    explicit HttpServerIO(SystemLog& log, std::string version = "Unspecified");
    /// Stops, and waits for the workers; so it must not run on one of them.
    virtual ~HttpServerIO();
    HttpServerIO(const HttpServerIO&) = delete;
    HttpServerIO& operator=(const HttpServerIO&) = delete;

    /// The numeric address to listen on; absent for all. Set before start().
    std::optional<std::string> listenAddressIPv4;
    std::optional<std::string> listenAddressIPv6;
    /// Called on a worker when the socket fails, so that the server ends without a stop(). Set before start().
    std::function<void()> onFailure;

    /// Does nothing on a running server. Throws SocketError when the port can't be had and std::system_error when the
    /// system has no thread to give; both leave the state `starting`, from which start() can be called again.
    void start(std::uint16_t port, bool forceIPv4 = false);
    /// Ends every connection and returns when the port is free; handlers may still run then, and their responses are
    /// not sent. Does nothing unless the server is running. Any thread may call it, a handler's too.
    void stop();

    HttpServerIOState state() const { return m_state; }
    bool operating() const { return m_state == HttpServerIOState::running; }
    /// The port really bound. This and isIPv4() throw SocketError when the server has no listening socket.
    std::uint16_t port() const;
    bool isIPv4() const;

    /// Answers what is not to be let in. `head` is a request without its body, which is dropped unseen when there is an
    /// answer. Called on the connection's worker, on many at once.
    virtual std::optional<HttpResponse> refusal(const HttpRequest& head) const;
    /// What is to answer `request`. Called on the connection's worker, on many at once.
    virtual HttpRouter::Match dispatch(const HttpRequest& request) const;

  protected:
    /// What the destructor does. A class that overrides one of the two above calls it in its own destructor, since a
    /// worker may be inside of it until then.
    void finish();

  private:
    struct Run;
    struct Connection;

    void acceptLoop(const std::shared_ptr<Run>& run);
    void serve(const std::shared_ptr<Run>& run, const std::shared_ptr<Socket>& socket);
    void handleConnection(const Run& run, Socket& socket) const;
    bool handleRequest(const Run& run, Connection& connection) const;
    HttpResponse answer(HttpRequest& request) const;
    using Step = std::function<std::optional<HttpResponse>()>;
    std::optional<HttpResponse> orFailure(const HttpRequest& request, const Step& step) const;
    bool respond(const Run& run, Socket& socket, const HttpResponse& response, bool keepAlive) const;
    void stop(const std::shared_ptr<Run>& run);
    std::shared_ptr<Run> currentRun() const;

    SystemLog& m_log;
    const std::string m_version;
    mutable std::mutex m_mutex; // guards m_run and every change of m_state
    std::atomic<HttpServerIOState> m_state = HttpServerIOState::stopped;
    std::shared_ptr<Run> m_run; // the last one started
    WorkerPool m_workers;
};

} // namespace quillorn
