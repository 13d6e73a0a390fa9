// Load on one HTTP server: every connection sends a GET, or a POST of --body, waits for the whole answer and sends the
// next one.
//
// The server keeps a connection only for clients that ask with "Connection: keep-alive", so that is sent unless
// --close asks for a new connection for each request.

#include <algorithm>
#include <arpa/inet.h>
#include <cctype>
#include <cerrno>
#include <charconv>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <fmt/core.h>
#include <memory>
#include <netdb.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <sys/epoll.h>
#include <sys/socket.h>
#include <thread>
#include <unistd.h>
#include <vector>

namespace {

using Clock = std::chrono::steady_clock;

struct Options {
    std::string host = "127.0.0.1";
    std::string path = "/api/health";
    std::string body{}; // JSON
    int port = 18080;
    int connections = 8;
    int threads = 1;
    double seconds = 3;
    bool close = false;
    bool json = false;
};

constexpr const char* usage = "usage: quillorn-http-load [--host ADDRESS] [--port N] [--path PATH] [--connections N]\n"
                              "                          [--body JSON] [--threads N] [--seconds S] [--close] [--json]\n"
                              "ADDRESS is a numeric IPv4 address. Prints requests a second and the latencies in\n"
                              "microseconds; errors are answers other than 2xx and connections that broke.\n";

struct Result {
    std::vector<std::uint32_t> microseconds;
    std::uint64_t errors = 0;
    std::uint64_t bytes = 0;
};

struct Connection {
    int descriptor = -1;
    Clock::time_point sentAt;
    std::string received; // of the answer under way
};

/// The length of the answer at the start of `received`: absent while unknown, npos where the connection's end ends it.
std::optional<std::size_t> answerLength(std::string_view received) {
    const auto headEnd = received.find("\r\n\r\n");
    if (headEnd == std::string_view::npos)
        return std::nullopt;
    constexpr std::string_view name = "\r\ncontent-length: ";
    std::string head(received.substr(0, headEnd));
    std::ranges::transform(head, head.begin(), [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    const auto at = head.find(name);
    if (at == std::string_view::npos)
        return std::string_view::npos;
    std::size_t length = 0;
    const char* digits = received.data() + at + name.size();
    std::from_chars(digits, received.data() + headEnd, length);
    return headEnd + 4 + length;
}

/// One thread's share of the connections, on an epoll of its own.
class Load {
  public:
    Load(const Options& options, int connections, Clock::time_point end)
        : m_options(options),
          m_end(end),
          m_connections(static_cast<std::size_t>(connections)),
          m_epoll(::epoll_create1(0)) {
        m_request =
            fmt::format("{} {} HTTP/1.1\r\nHost: {}:{}\r\nConnection: {}\r\n", options.body.empty() ? "GET" : "POST",
                        options.path, options.host, options.port, options.close ? "close" : "keep-alive");
        if (!options.body.empty())
            m_request += fmt::format("Accept: application/json, text/event-stream\r\nContent-Type: application/json\r\n"
                                     "Content-Length: {}\r\n",
                                     options.body.size());
        m_request += "\r\n" + options.body;
        m_target.sin_family = AF_INET;
        m_target.sin_port = htons(static_cast<std::uint16_t>(options.port));
        if (::inet_pton(AF_INET, options.host.c_str(), &m_target.sin_addr) != 1)
            throw std::runtime_error("not a numeric IPv4 address: " + options.host);
    }

    ~Load() {
        for (auto& connection : m_connections)
            disconnect(connection);
        ::close(m_epoll);
    }

    Result run() {
        m_result.microseconds.reserve(1 << 20);
        for (auto& connection : m_connections)
            request(connection);
        epoll_event events[256];
        while (Clock::now() < m_end) {
            const int count = ::epoll_wait(m_epoll, events, 256, 100);
            for (int i = 0; i < count; ++i)
                receive(*static_cast<Connection*>(events[i].data.ptr));
        }
        return std::move(m_result);
    }

  private:
    void connect(Connection& connection) {
        connection.descriptor = ::socket(AF_INET, SOCK_STREAM, 0);
        const int on = 1;
        ::setsockopt(connection.descriptor, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
        if (::connect(connection.descriptor, reinterpret_cast<const sockaddr*>(&m_target), sizeof m_target) != 0)
            throw std::runtime_error(fmt::format("connect: {}", std::strerror(errno)));
        epoll_event event{};
        event.events = EPOLLIN;
        event.data.ptr = &connection;
        ::epoll_ctl(m_epoll, EPOLL_CTL_ADD, connection.descriptor, &event);
    }

    static void disconnect(Connection& connection) {
        if (connection.descriptor != -1)
            ::close(connection.descriptor);
        connection.descriptor = -1;
    }

    void request(Connection& connection) {
        connection.received.clear();
        connection.sentAt = Clock::now(); // setting up a new connection counts
        if (connection.descriptor == -1)
            connect(connection);
        // Far smaller than any socket buffer, so it never leaves in part.
        if (::send(connection.descriptor, m_request.data(), m_request.size(), MSG_NOSIGNAL) < 0)
            broken(connection);
    }

    void broken(Connection& connection) {
        ++m_result.errors;
        disconnect(connection);
        request(connection);
    }

    void receive(Connection& connection) {
        char piece[65536];
        const auto count = ::recv(connection.descriptor, piece, sizeof piece, MSG_DONTWAIT);
        if (count < 0 && errno == EAGAIN)
            return;
        if (count < 0)
            return broken(connection);
        m_result.bytes += static_cast<std::uint64_t>(count);
        connection.received.append(piece, static_cast<std::size_t>(count));
        const auto length = answerLength(connection.received);
        const bool ended = count == 0;
        if (ended && (!length || (*length != std::string_view::npos && connection.received.size() < *length)))
            return broken(connection);
        if (ended || (length && connection.received.size() >= *length && !m_options.close))
            answered(connection, ended);
    }

    void answered(Connection& connection, bool ended) {
        const auto time = std::chrono::duration_cast<std::chrono::microseconds>(Clock::now() - connection.sentAt);
        m_result.microseconds.push_back(static_cast<std::uint32_t>(time.count()));
        if (!connection.received.starts_with("HTTP/1.1 2"))
            ++m_result.errors;
        if (ended)
            disconnect(connection);
        request(connection);
    }

    const Options& m_options;
    const Clock::time_point m_end;
    std::vector<Connection> m_connections;
    const int m_epoll;
    std::string m_request;
    sockaddr_in m_target{};
    Result m_result;
};

void report(const Options& options, std::vector<Result>& results, double seconds) {
    Result all;
    for (auto& result : results) {
        all.errors += result.errors;
        all.bytes += result.bytes;
        all.microseconds.insert(all.microseconds.end(), result.microseconds.begin(), result.microseconds.end());
    }
    auto& times = all.microseconds;
    std::sort(times.begin(), times.end());
    const auto percentile = [&](double share) {
        return times.empty() ? 0 : times[static_cast<std::size_t>(share * static_cast<double>(times.size() - 1))];
    };
    const double rate = static_cast<double>(times.size()) / seconds;
    const double megabytes = static_cast<double>(all.bytes) / seconds / 1e6;
    if (options.json)
        fmt::print("{{\"path\":\"{}\",\"connections\":{},\"keepAlive\":{},\"requestsPerSecond\":{:.0f},\"p50\":{},"
                   "\"p99\":{},\"megabytesPerSecond\":{:.1f},\"errors\":{}}}\n",
                   options.path, options.connections, !options.close, rate, percentile(0.5), percentile(0.99),
                   megabytes, all.errors);
    else
        fmt::print("{:>3} connections, {}: {:.0f} requests/s, p50 {} us, p99 {} us, {:.1f} MB/s, {} errors\n",
                   options.connections, options.close ? "a new one each" : "kept", rate, percentile(0.5),
                   percentile(0.99), megabytes, all.errors);
}

template <class Number>
Number number(std::string_view text) {
    Number value{};
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc{} || end != text.data() + text.size() || value <= 0)
        throw std::runtime_error(fmt::format("not a positive number: {}", text));
    return value;
}

Options parsed(int argc, char** argv) {
    Options options;
    for (int i = 1; i < argc; ++i) {
        const std::string_view name = argv[i];
        const auto value = [&]() -> std::string_view {
            if (i + 1 == argc)
                throw std::runtime_error(fmt::format("{} needs a value", name));
            return argv[++i];
        };
        if (name == "--host")
            options.host = value();
        else if (name == "--port")
            options.port = number<int>(value());
        else if (name == "--path")
            options.path = value();
        else if (name == "--body")
            options.body = value();
        else if (name == "--connections")
            options.connections = number<int>(value());
        else if (name == "--threads")
            options.threads = number<int>(value());
        else if (name == "--seconds")
            options.seconds = number<double>(value());
        else if (name == "--close")
            options.close = true;
        else if (name == "--json")
            options.json = true;
        else
            throw std::runtime_error(fmt::format("unknown option {}", name));
    }
    options.threads = std::min(options.threads, options.connections);
    return options;
}

Result runShare(const Options& options, int index, Clock::time_point end, std::string& failure) {
    const int share = options.connections / options.threads + (index < options.connections % options.threads ? 1 : 0);
    try {
        return Load(options, share, end).run();
    } catch (const std::exception& error) {
        failure = error.what();
        return {};
    }
}

} // namespace

int main(int argc, char** argv) {
    Options options;
    try {
        options = parsed(argc, argv);
    } catch (const std::exception& error) {
        fmt::print(stderr, "{}\n{}", error.what(), usage);
        return 2;
    }
    const auto threads = static_cast<std::size_t>(options.threads);
    std::vector<Result> results(threads);
    std::vector<std::string> failures(threads);
    const auto begin = Clock::now();
    const auto end =
        begin + std::chrono::duration_cast<Clock::duration>(std::chrono::duration<double>(options.seconds));
    {
        std::vector<std::jthread> workers;
        for (std::size_t i = 0; i < threads; ++i)
            workers.emplace_back([&, i] { results[i] = runShare(options, static_cast<int>(i), end, failures[i]); });
    }
    for (const auto& failure : failures) {
        if (failure.empty())
            continue;
        fmt::print(stderr, "{}\n", failure);
        return 1;
    }
    report(options, results, std::chrono::duration<double>(Clock::now() - begin).count());
    return 0;
}
