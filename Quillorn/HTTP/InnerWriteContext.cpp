#include "HTTP/InnerWriteContext.h"

#include "HTTP/Socket.h"

namespace quillorn {

void InnerWriteContext::write(std::string_view bytes) {
    if (m_buffer.size() + bytes.size() <= capacity) {
        m_buffer += bytes;
        return;
    }
    m_socket.writeBytes(m_buffer, bytes);
    m_buffer.clear();
}

void InnerWriteContext::flush() {
    m_socket.writeBytes(m_buffer);
    m_buffer.clear();
}

} // namespace quillorn
