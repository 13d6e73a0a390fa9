#include "Support/TestClient.h"

#include <algorithm>
#include <arpa/inet.h>
#include <gtest/gtest.h>
#include <netinet/in.h>
#include <stdexcept>
#include <sys/socket.h>
#include <sys/time.h>
#include <unistd.h>

namespace quillorn {

TestClient::TestClient(std::uint16_t port, const char* address) : m_descriptor(::socket(AF_INET, SOCK_STREAM, 0)) {
    const timeval patience{10, 0};
    ::setsockopt(m_descriptor, SOL_SOCKET, SO_RCVTIMEO, &patience, sizeof patience);
    sockaddr_in target{};
    target.sin_family = AF_INET;
    target.sin_port = htons(port);
    ::inet_pton(AF_INET, address, &target.sin_addr);
    if (::connect(m_descriptor, reinterpret_cast<const sockaddr*>(&target), sizeof target) != 0) {
        ::close(m_descriptor);
        throw std::runtime_error("no connection");
    }
}

TestClient::~TestClient() {
    ::close(m_descriptor);
}

void TestClient::send(std::string_view bytes) const {
    while (!bytes.empty()) {
        const auto count = ::send(m_descriptor, bytes.data(), bytes.size(), MSG_NOSIGNAL);
        if (count < 1)
            return; // the server may well have hung up
        bytes.remove_prefix(static_cast<std::size_t>(count));
    }
}

void TestClient::finish() const {
    ::shutdown(m_descriptor, SHUT_WR);
}

void TestClient::reset() const {
    const linger atOnce{1, 0};
    ::setsockopt(m_descriptor, SOL_SOCKET, SO_LINGER, &atOnce, sizeof atOnce);
}

bool TestClient::receive() {
    char piece[65536];
    const auto count = ::recv(m_descriptor, piece, sizeof piece, 0);
    if (count == -1 && (errno == EAGAIN || errno == EWOULDBLOCK))
        ADD_FAILURE() << "the server neither answers nor hangs up";
    if (count < 1)
        return false;
    m_received.append(piece, static_cast<std::size_t>(count));
    return true;
}

std::string TestClient::response() {
    std::size_t end = 0;
    while ((end = m_received.find("\r\n\r\n")) == std::string::npos)
        if (!receive())
            return std::exchange(m_received, {});
    end += 4;
    if (const auto at = m_received.find("Content-Length: "); at < end)
        end += std::stoul(m_received.substr(at + 16));
    while (m_received.size() < end)
        if (!receive())
            return std::exchange(m_received, {});
    auto whole = m_received.substr(0, end);
    m_received.erase(0, end);
    return whole;
}

void TestClient::take(std::size_t count) {
    char piece[4096];
    while (count > 0) {
        const auto received = ::recv(m_descriptor, piece, std::min(count, sizeof piece), 0);
        if (received <= 0)
            return;
        count -= static_cast<std::size_t>(received);
    }
}

std::string TestClient::rest() {
    while (receive()) {
    }
    return std::exchange(m_received, {});
}

std::string answerTo(std::uint16_t port, std::string_view request) {
    TestClient client(port);
    client.send(request);
    return client.rest();
}

std::string bodyOf(const std::string& response) {
    const auto end = response.find("\r\n\r\n");
    return end == std::string::npos ? "no response: " + response : response.substr(end + 4);
}

} // namespace quillorn
