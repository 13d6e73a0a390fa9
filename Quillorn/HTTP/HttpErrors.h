#pragma once

#include <stdexcept>
#include <string>
#include <string_view>

namespace quillorn {

/// A failed socket call. `what()` reads like `bindFailed("Address already in use")`.
class SocketError : public std::runtime_error {
  public:
    enum class Kind {
        socketCreationFailed,
        socketSettingReUseAddrFailed,
        bindFailed,
        listenFailed,
        writeFailed,
        getPeerNameFailed,
        getNameInfoFailed,
        acceptFailed,
        recvFailed,
        getSockNameFailed,
        convertingPeerNameFailed,
    };

    /// `errorNumber` is errno as the failing call left it.
    SocketError(Kind kind, int errorNumber);

    Kind kind() const { return m_kind; }
    int errorNumber() const { return m_errorNumber; }
    /// The system's words for the error number.
    std::string text() const;

  private:
    Kind m_kind;
    int m_errorNumber;
};

/// A request that can't be read. The connection that sent it is closed without a response.
class HttpParserError : public std::runtime_error {
  public:
    enum class Kind { invalidStatusLine, negativeContentLength };

    /// `line` is the request line as read; only invalidStatusLine has one.
    explicit HttpParserError(Kind kind, std::string_view line = {});

    Kind kind() const { return m_kind; }
    const std::string& line() const { return m_line; }

  private:
    Kind m_kind;
    std::string m_line;
};

/// A response body that can't be turned into bytes.
class SerializationError : public std::runtime_error {
  public:
    enum class Kind { invalidObject, notSupported };

    explicit SerializationError(Kind kind);

    Kind kind() const { return m_kind; }

  private:
    Kind m_kind;
};

} // namespace quillorn
