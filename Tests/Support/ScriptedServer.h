#pragma once

#include "HTTP/HttpRequest.h"
#include "HTTP/Socket.h"

#include <atomic>
#include <condition_variable>
#include <deque>
#include <mutex>
#include <string>
#include <thread>
#include <variant>
#include <vector>

namespace quillorn {

/// A server that says what it was told to, byte for byte: each request gets the next script, and the connection ends
/// with it. Requests beyond the scripts get the one that stands by, or status 500.
class ScriptedServer {
  public:
    /// Says nothing more until release() or the client's going.
    struct Silence {};
    /// Ends the connection as a crash would.
    struct Reset {};
    /// The text byte by byte, each in a packet of its own.
    struct Bytewise {
        std::string text;
    };
    using Script = std::vector<std::variant<std::string, Bytewise, Silence, Reset>>;

    ScriptedServer();
    ~ScriptedServer();

    std::string url() const { return "http://127.0.0.1:" + std::to_string(m_listener.boundPort()); }
    void expect(Script script);
    void standBy(Script script);
    /// Those that no request has got.
    void forgetScripts();
    /// Waits until so many requests have come, and gives them all.
    std::vector<HttpRequest> requests(std::size_t count = 0);
    /// Waits until a script has come to its silence, with all before it on its way.
    void waitForSilence();
    void release();
    /// Waits until a client has left during a silence.
    void waitForLeaving();

    /// A head, and a body up to the end of the connection.
    static std::string answer(int status, const std::string& body, const std::string& headers = {});

  private:
    void serve(Socket socket);
    bool play(Socket& socket, const Script& script);
    bool beSilent(const Socket& socket);

    Socket m_listener;
    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::deque<Script> m_scripts;
    Script m_standBy{answer(500, "no script")};
    std::vector<HttpRequest> m_requests;
    int m_silences = 0;
    int m_leavings = 0;
    bool m_isReleased = false;
    std::vector<std::jthread> m_workers;
    std::jthread m_accepting;
};

/// Lines of the stream of a chat completion.
namespace chat {
std::string text(std::string_view content);
std::string call(int index, std::string_view id, std::string_view name, std::string_view arguments);
std::string finish(std::string_view reason);
inline const std::string done = "data: [DONE]\n\n";
/// A whole stream of status 200.
ScriptedServer::Script stream(const std::vector<std::string>& chunks);
} // namespace chat

} // namespace quillorn
