#include "HTTP/Socket.h"

#include "HTTP/HttpErrors.h"
#include "Platform/UTF8.h"

#include <algorithm>
#include <arpa/inet.h>
#include <array>
#include <cerrno>
#include <cstring>
#include <netdb.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/uio.h>
#include <unistd.h>
#include <utility>

namespace quillorn {

namespace {

using Kind = SocketError::Kind;

// A write to a peer that is gone must be an error and never a signal; systems know one of two ways to say so.
#ifdef MSG_NOSIGNAL
constexpr int sendFlags = MSG_NOSIGNAL;
#else
constexpr int sendFlags = 0;
#endif

// Programs started by this process must not hold its ports and connections.
#ifdef SOCK_CLOEXEC
constexpr int creationFlags = SOCK_CLOEXEC;
#else
constexpr int creationFlags = 0;
#endif

void setOption(int descriptor, int level, int option) {
    const int on = 1;
    ::setsockopt(descriptor, level, option, &on, sizeof on);
}

void refuseSignals([[maybe_unused]] int descriptor) {
#ifdef SO_NOSIGPIPE
    setOption(descriptor, SOL_SOCKET, SO_NOSIGPIPE);
#endif
}

void bindTo(const Socket& socket, const sockaddr* address, socklen_t size) {
    if (::bind(socket.descriptor(), address, size) == -1)
        throw SocketError(Kind::bindFailed, errno);
}

void bindIPv4(const Socket& socket, std::uint16_t port, const char* address) {
    sockaddr_in target{};
    target.sin_family = AF_INET;
    target.sin_port = htons(port);
    if (address)
        ::inet_pton(AF_INET, address, &target.sin_addr);
    bindTo(socket, reinterpret_cast<const sockaddr*>(&target), sizeof target);
}

void bindIPv6(const Socket& socket, std::uint16_t port, const char* address) {
    sockaddr_in6 target{};
    target.sin6_family = AF_INET6;
    target.sin6_port = htons(port);
    target.sin6_addr = in6addr_any;
    if (address)
        ::inet_pton(AF_INET6, address, &target.sin6_addr);
    bindTo(socket, reinterpret_cast<const sockaddr*>(&target), sizeof target);
}

sockaddr_storage localAddress(int descriptor) {
    sockaddr_storage address{};
    socklen_t size = sizeof address;
    if (::getsockname(descriptor, reinterpret_cast<sockaddr*>(&address), &size) == -1)
        throw SocketError(Kind::getSockNameFailed, errno);
    return address;
}

void appendLine(std::string& line, std::string_view bytes) {
    for (const char character : bytes) {
        if (static_cast<unsigned char>(character) > 13)
            appendLatin1(line, character);
    }
}

} // namespace

Socket::Socket(Socket&& other) noexcept
    : m_descriptor(std::exchange(other.m_descriptor, noDescriptor)),
      m_input(std::move(other.m_input)),
      m_inputBegin(std::exchange(other.m_inputBegin, 0)),
      m_inputEnd(std::exchange(other.m_inputEnd, 0)) {}

Socket& Socket::operator=(Socket&& other) noexcept {
    if (this != &other) {
        close();
        m_descriptor = std::exchange(other.m_descriptor, noDescriptor);
        m_input = std::move(other.m_input);
        m_inputBegin = std::exchange(other.m_inputBegin, 0);
        m_inputEnd = std::exchange(other.m_inputEnd, 0);
    }
    return *this;
}

Socket Socket::listenSocket(std::uint16_t port, bool forceIPv4, int backlog,
                            const std::optional<std::string>& address) {
    Socket socket(::socket(forceIPv4 ? AF_INET : AF_INET6, SOCK_STREAM | creationFlags, 0));
    if (socket.m_descriptor == -1)
        throw SocketError(Kind::socketCreationFailed, errno);
    const int on = 1;
    if (::setsockopt(socket.m_descriptor, SOL_SOCKET, SO_REUSEADDR, &on, sizeof on) == -1)
        throw SocketError(Kind::socketSettingReUseAddrFailed, errno);
    refuseSignals(socket.m_descriptor);
    // Accepted sockets inherit this. Without it a response that leaves in two pieces waits 40 ms for the peer's
    // delayed acknowledgement.
    setOption(socket.m_descriptor, IPPROTO_TCP, TCP_NODELAY);

    const char* wanted = address ? address->c_str() : nullptr;
    if (forceIPv4)
        bindIPv4(socket, port, wanted);
    else
        bindIPv6(socket, port, wanted);
    if (::listen(socket.m_descriptor, backlog) == -1)
        throw SocketError(Kind::listenFailed, errno);
    return socket;
}

Socket Socket::acceptClient() const {
#ifdef SOCK_CLOEXEC
    Socket client(::accept4(m_descriptor, nullptr, nullptr, SOCK_CLOEXEC));
#else
    Socket client(::accept(m_descriptor, nullptr, nullptr));
#endif
    if (client.m_descriptor == -1)
        throw SocketError(Kind::acceptFailed, errno);
    refuseSignals(client.m_descriptor);
    return client;
}

std::size_t Socket::receive(char* into, std::size_t capacity) const {
    ssize_t count = 0;
    do
        count = ::read(m_descriptor, into, capacity);
    while (count == -1 && errno == EINTR);
    if (count < 1)
        throw SocketError(Kind::recvFailed, errno);
    return static_cast<std::size_t>(count);
}

void Socket::fillInput() {
    if (!m_input)
        m_input = std::make_unique_for_overwrite<char[]>(inputCapacity);
    m_inputBegin = m_inputEnd = 0;
    m_inputEnd = receive(m_input.get(), inputCapacity);
}

std::uint8_t Socket::readByte() {
    if (m_inputBegin == m_inputEnd)
        fillInput();
    return static_cast<std::uint8_t>(m_input[m_inputBegin++]);
}

std::string Socket::readLine() {
    std::string line;
    for (;;) {
        if (m_inputBegin == m_inputEnd)
            fillInput();
        const std::string_view waiting(m_input.get() + m_inputBegin, m_inputEnd - m_inputBegin);
        const auto lineFeed = waiting.find('\n');
        appendLine(line, waiting.substr(0, lineFeed));
        if (lineFeed != std::string_view::npos) {
            m_inputBegin += lineFeed + 1;
            return line;
        }
        m_inputBegin = m_inputEnd;
    }
}

std::string Socket::readBytes(std::int64_t length) {
    std::string bytes;
    if (length < 1)
        return bytes;
    const auto wanted = static_cast<std::size_t>(length);
    const auto waiting = std::min(wanted, m_inputEnd - m_inputBegin);
    if (waiting > 0) {
        bytes.assign(m_input.get() + m_inputBegin, waiting);
        m_inputBegin += waiting;
    }
    constexpr std::size_t smallestStep = 64 * 1024;
    std::size_t received = bytes.size();
    while (received < wanted) {
        if (received == bytes.size())
            bytes.resize(received + std::min(wanted - received, std::max(received, smallestStep)));
        received += receive(bytes.data() + received, bytes.size() - received);
    }
    return bytes;
}

bool Socket::hasUnread() const noexcept {
    char next = 0;
    return m_inputBegin != m_inputEnd || ::recv(m_descriptor, &next, 1, MSG_PEEK | MSG_DONTWAIT) > 0;
}

void Socket::drain(std::size_t limit, std::chrono::milliseconds patience) noexcept {
    m_inputBegin = m_inputEnd;
    std::array<char, 64 * 1024> dropped; // NOLINT(cppcoreguidelines-pro-type-member-init): nobody reads it
    pollfd input{m_descriptor, POLLIN, 0};
    for (std::size_t count = 0; count < limit;) {
        if (::poll(&input, 1, static_cast<int>(patience.count())) < 1)
            return;
        const ssize_t received = ::read(m_descriptor, dropped.data(), dropped.size());
        if (received < 1)
            return;
        count += static_cast<std::size_t>(received);
    }
}

void Socket::writeBytes(std::string_view first, std::string_view second) {
    while (!first.empty() || !second.empty()) {
        iovec pieces[2] = {{const_cast<char*>(first.data()), first.size()},
                           {const_cast<char*>(second.data()), second.size()}};
        msghdr message{};
        message.msg_iov = pieces;
        message.msg_iovlen = 2;
        const ssize_t count = ::sendmsg(m_descriptor, &message, sendFlags);
        if (count == -1 && errno == EINTR)
            continue;
        if (count < 1)
            throw SocketError(Kind::writeFailed, errno);
        const auto sent = static_cast<std::size_t>(count);
        const auto ofFirst = std::min(sent, first.size());
        first.remove_prefix(ofFirst);
        second.remove_prefix(sent - ofFirst);
    }
}

std::string Socket::peerAddress() const {
    // An address of another family is longer than this and arrives cut; getnameinfo then refuses it.
    sockaddr_in address{};
    socklen_t size = sizeof address;
    if (::getpeername(m_descriptor, reinterpret_cast<sockaddr*>(&address), &size) == -1)
        throw SocketError(Kind::getPeerNameFailed, errno);
    char host[NI_MAXHOST];
    if (::getnameinfo(reinterpret_cast<const sockaddr*>(&address), sizeof address, host, sizeof host, nullptr, 0,
                      NI_NUMERICHOST) != 0)
        throw SocketError(Kind::getNameInfoFailed, errno);
    return host;
}

std::uint16_t Socket::boundPort() const {
    const sockaddr_storage address = localAddress(m_descriptor);
    // The port stands at the same place in the addresses of both families.
    sockaddr_in common{};
    std::memcpy(&common, &address, sizeof common);
    return ntohs(common.sin_port);
}

bool Socket::isIPv4() const {
    return localAddress(m_descriptor).ss_family == AF_INET;
}

void Socket::interrupt() const noexcept {
    ::shutdown(m_descriptor, SHUT_RDWR);
}

void Socket::endWriting() const noexcept {
    ::shutdown(m_descriptor, SHUT_WR);
}

void Socket::close() noexcept {
    if (m_descriptor != noDescriptor)
        ::close(std::exchange(m_descriptor, noDescriptor));
}

} // namespace quillorn
