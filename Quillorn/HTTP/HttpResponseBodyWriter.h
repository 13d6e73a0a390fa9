#pragma once

#include <string_view>

namespace quillorn {

/// Takes a response's body piece by piece.
class HttpResponseBodyWriter {
  public:
    virtual ~HttpResponseBodyWriter() = default;
    /// Throws SocketError when the client is gone.
    virtual void write(std::string_view bytes) = 0;
};

} // namespace quillorn
