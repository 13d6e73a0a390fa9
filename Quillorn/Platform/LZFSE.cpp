#include "Platform/LZFSE.h"

#include <cstdint>
#include <fmt/core.h>
#include <lzfse.h>
#include <new>

namespace quillorn {

namespace {

/// The decoder reads a little beyond the end of a stream that is cut off.
constexpr std::size_t padding = 1024;

const std::uint8_t* unsignedBytes(std::string_view bytes) {
    return reinterpret_cast<const std::uint8_t*>(bytes.data());
}
std::uint8_t* unsignedBytes(char* bytes) {
    return reinterpret_cast<std::uint8_t*>(bytes);
}

[[noreturn]] void throwCutOff() {
    throw CompressionError("The compressed data is incomplete");
}
[[noreturn]] void throwDamaged() {
    throw CompressionError("The compressed data is damaged");
}
[[noreturn]] void throwOutOfMemory() {
    throw CompressionError("There is not enough memory");
}

/// A little-endian number; the stream ends behind it at the earliest.
std::uint64_t number(std::string_view stream, std::size_t at, std::size_t bytes) {
    if (stream.size() < at + bytes)
        throwCutOff();
    std::uint64_t value = 0;
    for (std::size_t i = bytes; i > 0; --i)
        value = value << 8 | static_cast<std::uint8_t>(stream[at + i - 1]);
    return value;
}

/// What the head of a block says.
struct Block {
    std::uint64_t length; // with its head
    std::uint64_t decompressed;
};

/// The four kinds of blocks begin with a mark and the number of bytes that they decompress to.
Block readBlock(std::string_view stream) {
    constexpr std::uint64_t twentyBits = (1U << 20) - 1;
    const std::string_view mark = stream.substr(0, 4);
    if (mark == "bvx-") // plain
        return {8 + number(stream, 4, 4), number(stream, 4, 4)};
    if (mark == "bvxn") // LZVN
        return {12 + number(stream, 8, 4), number(stream, 4, 4)};
    if (mark == "bvx1") // plain tables: lengths of literals and matches
        return {770 + number(stream, 20, 4) + number(stream, 24, 4), number(stream, 4, 4)};
    if (mark == "bvx2") { // compressed tables: the same lengths as bit fields, and that of the head
        const std::uint64_t head = number(stream, 24, 4);
        if (head < 32)
            throwDamaged();
        return {head + (number(stream, 8, 8) >> 20 & twentyBits) + (number(stream, 16, 8) >> 40 & twentyBits),
                number(stream, 4, 4)};
    }
    if (mark.size() < 4)
        throwCutOff();
    throwDamaged();
}

/// Follows the heads of all blocks to the end of the stream, which the decoder itself does not report.
std::uint64_t decompressedSize(std::string_view stream) {
    if (!stream.starts_with("bvx"))
        throw NotCompressedError("The data is not compressed with LZFSE");
    std::uint64_t sum = 0;
    while (!stream.starts_with("bvx$")) {
        const Block block = readBlock(stream);
        if (block.length > stream.size())
            throwCutOff();
        stream.remove_prefix(block.length);
        sum += block.decompressed;
    }
    if (stream.size() > 4)
        throw CompressionError("There is something behind the end of the compressed data");
    return sum;
}

} // namespace

ByteBuffer compressLZFSE(std::string_view bytes) {
    try {
        // What does not get smaller is stored as it is, with a head for each block.
        ByteBuffer compressed(bytes.size() + bytes.size() / 64 + 1024);
        const std::size_t size = lzfse_encode_buffer(unsignedBytes(compressed.data()), compressed.size(),
                                                     unsignedBytes(bytes), bytes.size(), nullptr);
        if (size == 0)
            throwOutOfMemory();
        compressed.shrink(size);
        return compressed;
    } catch (const std::bad_alloc&) {
        throwOutOfMemory();
    }
}

ByteBuffer decompressLZFSE(std::string compressed, std::size_t limit) {
    const std::uint64_t size = decompressedSize(compressed);
    if (size > limit)
        throw CompressionError(
            fmt::format("The compressed data stands for {} bytes, and there is room for {}", size, limit));
    try {
        const std::size_t length = compressed.size();
        compressed.append(padding, '\0');
        // One byte of room more than needed: one that is used shows a block that is longer than it says.
        ByteBuffer bytes(size + 1);
        const std::size_t written = lzfse_decode_buffer(unsignedBytes(bytes.data()), bytes.size(),
                                                        unsignedBytes(std::string_view(compressed)), length, nullptr);
        if (written != size)
            throwDamaged();
        bytes.shrink(size);
        return bytes;
    } catch (const std::bad_alloc&) {
        throwOutOfMemory();
    }
}

} // namespace quillorn
