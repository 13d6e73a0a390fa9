#include "HTTP/HttpErrors.h"

#include <fmt/core.h>
#include <system_error>

namespace quillorn {

namespace {

std::string systemText(int errorNumber) {
    return std::generic_category().message(errorNumber);
}

std::string_view name(SocketError::Kind kind) {
    switch (kind) {
        using enum SocketError::Kind;
    case socketCreationFailed:
        return "socketCreationFailed";
    case socketSettingReUseAddrFailed:
        return "socketSettingReUseAddrFailed";
    case bindFailed:
        return "bindFailed";
    case listenFailed:
        return "listenFailed";
    case writeFailed:
        return "writeFailed";
    case getPeerNameFailed:
        return "getPeerNameFailed";
    case getNameInfoFailed:
        return "getNameInfoFailed";
    case acceptFailed:
        return "acceptFailed";
    case recvFailed:
        return "recvFailed";
    case getSockNameFailed:
        return "getSockNameFailed";
    case convertingPeerNameFailed:
        return "convertingPeerNameFailed";
    }
    return "unknown";
}

std::string describe(HttpParserError::Kind kind, std::string_view line) {
    if (kind == HttpParserError::Kind::negativeContentLength)
        return "negativeContentLength";
    return fmt::format("invalidStatusLine(\"{}\")", line);
}

} // namespace

SocketError::SocketError(Kind kind, int errorNumber)
    : std::runtime_error(fmt::format("{}(\"{}\")", name(kind), systemText(errorNumber))),
      m_kind(kind),
      m_errorNumber(errorNumber) {}

std::string SocketError::text() const {
    return systemText(m_errorNumber);
}

HttpParserError::HttpParserError(Kind kind, std::string_view line)
    : std::runtime_error(describe(kind, line)),
      m_kind(kind),
      m_line(line) {}

SerializationError::SerializationError(Kind kind)
    : std::runtime_error(kind == Kind::invalidObject ? "invalidObject" : "notSupported"),
      m_kind(kind) {}

} // namespace quillorn
