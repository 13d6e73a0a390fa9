#pragma once

#include <chrono>
#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace quillorn {

class MainQueue;

/// Why there is no answer, or only a part of one, in words for the user.
class HttpFailure : public std::runtime_error {
  public:
    enum class Kind {
        transport,
        /// What came is no answer by HTTP.
        notHTTP,
    };
    explicit HttpFailure(const std::string& words, Kind kind = Kind::transport)
        : std::runtime_error(words),
          m_kind(kind) {}
    Kind kind() const { return m_kind; }

  private:
    Kind m_kind;
};

/// The address is none of the form http://host or https://host.
class InvalidURL final : public HttpFailure {
  public:
    InvalidURL() : HttpFailure("Invalid URL") {}
};

struct HttpCall {
    enum class Method { get, post };
    Method method = Method::get;
    std::string url;
    /// Beside these only Host and, for a post, Content-Length are sent.
    std::vector<std::pair<std::string, std::string>> headers;
    std::string body;
    /// How long the server may keep silent, from the start or from its last byte on.
    std::chrono::milliseconds timeout{0};
    /// Asks that server and no other: no proxy, and no redirect is followed.
    bool isDirect = false;
};

/// What is told of a call, on the main thread, in this order.
struct HttpCallHandlers {
    /// The status of the answer, before any of its body.
    std::function<void(int status)> onStatus;
    /// Each line without its end (LF or CRLF), a last one without an end included. Empty for a body as a whole.
    std::function<void(std::string_view line)> onLine;
    /// Once, and last; `body` is empty where lines were asked for.
    std::function<void(const std::optional<HttpFailure>& failure, std::string body)> onEnd;
};

/// Calls servers by HTTP. All transfers run on one background thread, which the first call starts. Certificates are
/// held against the system's, proxies are those of the environment, and redirects are followed where scheme, host and
/// port stay the same; any other one is an answer like the rest.
class HttpClient {
  public:
    /// A body beyond it is a failure.
    static constexpr std::size_t largestBody = std::size_t{64} * 1024 * 1024;

    explicit HttpClient(MainQueue& queue);
    /// Ends all calls; nothing is told of them any more.
    ~HttpClient();
    HttpClient(const HttpClient&) = delete;
    HttpClient& operator=(const HttpClient&) = delete;

    class Transfer;
    /// A call that is under way. It ends with this object: from then on nothing is told, and the server is left at
    /// once.
    class Running {
      public:
        Running() = default;
        ~Running();
        Running(Running&& other) noexcept = default;
        Running& operator=(Running&& other) noexcept;

      private:
        friend class HttpClient;
        explicit Running(std::shared_ptr<Transfer> transfer) : m_transfer(std::move(transfer)) {}
        std::shared_ptr<Transfer> m_transfer;
    };

    /// From the main thread only. Throws InvalidURL, and HttpFailure for a header with a line end or another control
    /// character; nothing is sent then.
    [[nodiscard]] Running start(HttpCall call, HttpCallHandlers handlers);

    /// The host that a call to `url` would go to; absent where start() throws InvalidURL.
    static std::optional<std::string> hostOf(const std::string& url);

  private:
    class Engine;
    std::shared_ptr<Engine> m_engine;
};

} // namespace quillorn
