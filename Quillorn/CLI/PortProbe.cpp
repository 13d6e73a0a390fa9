#include "CLI/PortProbe.h"

#include "HTTP/HttpErrors.h"
#include "HTTP/Socket.h"

#include <arpa/inet.h>
#include <string>
#include <sys/socket.h>
#include <sys/time.h>

namespace quillorn {

namespace {

/// The beginning of what the listener answers to a request for its state; empty when it does not answer.
std::string answerOf(std::uint16_t port) {
    const int descriptor = ::socket(AF_INET, SOCK_STREAM, 0);
    Socket socket(descriptor);
    const timeval patience{.tv_sec = 2, .tv_usec = 0};
    for (const int option : {SO_RCVTIMEO, SO_SNDTIMEO})
        ::setsockopt(descriptor, SOL_SOCKET, option, &patience, sizeof patience);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(port);
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    if (::connect(descriptor, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0)
        return {};
    std::string answer;
    try {
        socket.writeBytes("GET /api/health HTTP/1.1\r\nHost: localhost\r\n\r\n");
        for (int byte = 0; byte < 4096; ++byte)
            answer += static_cast<char>(socket.readByte());
    } catch (const SocketError&) {
        // The end of the answer.
    }
    return answer;
}

} // namespace

PortUse probePort(std::uint16_t port) {
    try {
        Socket::listenSocket(port, true, 1, "127.0.0.1");
        return PortUse::free;
    } catch (const SocketError&) {
        const std::string answer = answerOf(port);
        // The second is said where a key is asked for on this machine too.
        for (const char* mark : {"\"timestamp\"", "\"unauthorized\""})
            if (answer.starts_with("HTTP/1.1 ") && answer.find(mark) != std::string::npos)
                return PortUse::quillorn;
        return PortUse::other;
    }
}

} // namespace quillorn
