#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace quillorn {

/// A client that sends and takes bytes as they are, so that tests can misbehave. Waits for at most ten seconds.
class TestClient {
  public:
    explicit TestClient(std::uint16_t port, const char* address = "127.0.0.1");
    ~TestClient();
    TestClient(const TestClient&) = delete;
    TestClient& operator=(const TestClient&) = delete;

    void send(std::string_view bytes) const;
    /// Nothing more will be sent.
    void finish() const;
    /// The end of the connection will be a reset, as of a client that has crashed.
    void reset() const;
    /// One header section and the body that its Content-Length promises; what there is when the connection ends first.
    std::string response();
    /// Takes that many bytes off what comes, and no more; all where the connection ends before.
    void take(std::size_t count);
    /// Everything up to the end of the connection.
    std::string rest();

  private:
    bool receive();

    int m_descriptor;
    std::string m_received;
};

/// Sends `request` on a connection of its own and returns all that comes back.
std::string answerTo(std::uint16_t port, std::string_view request);
/// The body of a whole response.
std::string bodyOf(const std::string& response);

} // namespace quillorn
