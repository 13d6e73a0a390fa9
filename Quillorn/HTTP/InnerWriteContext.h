#pragma once

#include "HTTP/HttpResponseBodyWriter.h"

#include <cstddef>
#include <string>

namespace quillorn {

class Socket;

/// Gathers a response and sends it in large pieces, so that a small one leaves in one system call and a long one never
/// stands in memory as a whole.
class InnerWriteContext final : public HttpResponseBodyWriter {
  public:
    static constexpr std::size_t capacity = 64 * 1024;

    /// `head` is sent in front of everything else.
    InnerWriteContext(Socket& socket, std::string head) : m_socket(socket), m_buffer(std::move(head)) {}

    void write(std::string_view bytes) override;
    /// Sends what is left; the owner calls it at the end.
    void flush();

  private:
    Socket& m_socket;
    std::string m_buffer;
};

} // namespace quillorn
