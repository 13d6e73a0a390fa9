#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace quillorn {

/// Owns one descriptor of a stream socket and closes it exactly once. Used by one thread at a time; only interrupt()
/// may come from another one, and only while the owner can't be closing. Every operation may throw SocketError.
class Socket {
  public:
    static constexpr int noDescriptor = -1;

    /// Takes over `descriptor`.
    explicit Socket(int descriptor = noDescriptor) : m_descriptor(descriptor) {}
    ~Socket() { close(); }
    Socket(Socket&& other) noexcept;
    Socket& operator=(Socket&& other) noexcept;

    /// Listens on `port` (0: the system picks one) of one address, or of all when `address` is absent or no numeric
    /// address of the family.
    static Socket listenSocket(std::uint16_t port, bool forceIPv4, int backlog,
                               const std::optional<std::string>& address = {});
    Socket acceptClient() const;

    int descriptor() const { return m_descriptor; }

    std::uint8_t readByte();
    /// The text up to the next line feed, each byte taken as the Latin-1 character of that value and given as UTF-8.
    /// Bytes 0 to 13 are dropped.
    std::string readLine();
    /// Exactly `length` bytes; none for a length below 1. Memory follows what has really arrived, so that a promise of
    /// terabytes costs nothing.
    std::string readBytes(std::int64_t length);
    /// Whether something has arrived that was not read.
    bool hasUnread() const noexcept;
    /// Reads and drops what comes: up to the peer's end, to `limit` bytes, or until nothing comes for `patience`.
    void drain(std::size_t limit, std::chrono::milliseconds patience) noexcept;

    void writeBytes(std::string_view bytes) { writeBytes(bytes, {}); }
    /// Both pieces one after the other, in one system call where the system takes them.
    void writeBytes(std::string_view first, std::string_view second);

    /// The numeric address of an IPv4 peer; for one of another family getNameInfoFailed is thrown.
    std::string peerAddress() const;
    std::uint16_t boundPort() const;
    bool isIPv4() const;

    /// Ends every blocked and every later read, write and accept of this socket, and keeps the descriptor open.
    void interrupt() const noexcept;
    /// Tells the peer that nothing more comes.
    void endWriting() const noexcept;
    /// Later calls do nothing.
    void close() noexcept;

  private:
    // Requests are small, and idle connections keep theirs: this times a thousand.
    static constexpr std::size_t inputCapacity = 4096;

    std::size_t receive(char* into, std::size_t capacity) const;
    void fillInput();

    int m_descriptor;
    std::unique_ptr<char[]> m_input; // received and not yet taken: [m_inputBegin, m_inputEnd)
    std::size_t m_inputBegin = 0;
    std::size_t m_inputEnd = 0;
};

} // namespace quillorn
