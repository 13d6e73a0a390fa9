#pragma once

#include <cstddef>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>

namespace quillorn {

/// Data that can't be compressed or decompressed, in words that a user can read.
class CompressionError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

/// Data that is something else altogether.
class NotCompressedError : public CompressionError {
  public:
    using CompressionError::CompressionError;
};

/// A block of bytes that costs no memory before it is written to.
class ByteBuffer {
  public:
    ByteBuffer() = default;
    /// Throws std::bad_alloc.
    explicit ByteBuffer(std::size_t size) : m_bytes(new char[size]), m_size(size) {}

    char* data() { return m_bytes.get(); }
    std::size_t size() const { return m_size; }
    std::string_view view() const { return {m_bytes.get(), m_size}; }
    void shrink(std::size_t size) { m_size = size; }

  private:
    std::unique_ptr<char[]> m_bytes;
    std::size_t m_size = 0;
};

/// Compresses into one LZFSE stream. Throws CompressionError when there is not enough memory.
ByteBuffer compressLZFSE(std::string_view bytes);

/// Decompresses one LZFSE stream with nothing behind it. Throws CompressionError for everything else, for damage that
/// shows (the format has no checksum) and, before any memory is taken, for a stream of more than `limit` bytes.
ByteBuffer decompressLZFSE(std::string compressed, std::size_t limit);

} // namespace quillorn
