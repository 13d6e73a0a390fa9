#include "Platform/LZFSE.h"
#include "Support/Dice.h"

#include <gtest/gtest.h>

namespace quillorn {
namespace {

constexpr std::size_t plenty = std::size_t{1} << 40;

std::string failure(std::string compressed, std::size_t limit = plenty) {
    try {
        decompressLZFSE(std::move(compressed), limit);
    } catch (const CompressionError& error) {
        return error.what();
    }
    return "none";
}

std::string compressed(std::string_view bytes) {
    return std::string(compressLZFSE(bytes).view());
}

std::string noise(std::size_t size) {
    Dice dice(1);
    std::string bytes(size, '\0');
    for (char& byte : bytes)
        byte = static_cast<char>(dice.below(256));
    return bytes;
}

/// A text with about as much order as a store.
std::string prose(std::size_t size) {
    static const char* const words[] = {"offer ", "call ", "the ", "printer ", "invoice ", "2026-01-15 "};
    Dice dice(2);
    std::string text;
    while (text.size() < size)
        text += words[dice.below(6)];
    return text;
}

TEST(LZFSE, bringsEverythingBack) {
    for (const std::size_t size : {0U, 1U, 7U, 8U, 100U, 4095U, 4096U, 50'000U, 1'000'000U}) {
        for (const std::string& bytes : {std::string(size, 'x'), noise(size), prose(size)}) {
            std::string packed = compressed(bytes);
            EXPECT_LE(packed.size(), bytes.size() + bytes.size() / 64 + 512);
            EXPECT_TRUE(decompressLZFSE(packed, bytes.size()).view() == bytes) << size;
            // Not with less room, nor when something is missing or too much.
            EXPECT_TRUE(
                bytes.empty() ||
                failure(packed, bytes.size() - 1).ends_with("there is room for " + std::to_string(bytes.size() - 1)));
            EXPECT_EQ(failure(packed + '\0'), "There is something behind the end of the compressed data");
            packed.pop_back();
            EXPECT_EQ(failure(packed), "The compressed data is incomplete");
        }
    }
    EXPECT_LT(compressed(prose(1'000'000)).size(), 300'000U);
}

TEST(LZFSE, refusesWhatIsNoStream) {
    const std::string size("\xFF\xFF\xFF\x7F", 4), nothing(4, '\0'), end = "bvx$";
    const std::pair<std::string, const char*> cases[] = {
        {"", "The data is not compressed with LZFSE"},
        {"SQLite format 3", "The data is not compressed with LZFSE"},
        {"bvx", "The compressed data is incomplete"},
        {"bvx?" + noise(100), "The compressed data is damaged"},
        {"bvx2" + size + std::string(100, '\0') + end, "The compressed data is damaged"}, // a head of no length
        {"bvx-" + size + end, "The compressed data is incomplete"},
        {"bvxn" + size + nothing + end, "The compressed data is damaged"},
        {"bvx1" + size + std::string(762, '\0') + end, "The compressed data is damaged"},
        {"bvx1" + size, "The compressed data is incomplete"},
        {"bvxn" + std::string(4, '\xFF') + nothing + end, "The compressed data is damaged"}, // 4 GB of nothing
    };
    for (const auto& [stream, words] : cases)
        EXPECT_EQ(failure(stream), words) << stream.substr(0, 4);
    // Many heads that promise 4 GB each take no memory.
    std::string bomb;
    for (int block = 0; block < 1000; ++block)
        bomb += "bvxn" + std::string(4, '\xFF') + nothing;
    EXPECT_TRUE(failure(bomb + end, 1'000'000'000).ends_with("and there is room for 1000000000"));
}

} // namespace
} // namespace quillorn
