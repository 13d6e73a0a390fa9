#include "Fuzz/Harness.h"
#include "Platform/LZFSE.h"

#include <string>

using namespace quillorn;

namespace {

constexpr std::size_t limit = 1 << 20;

} // namespace

std::vector<std::string> quillorn::seeds() {
    std::vector<std::string> seeds;
    std::string prose;
    for (int i = 0; prose.size() < 20'000; ++i) // enough for the larger kind of block
        prose += "invoice " + std::to_string(i * i) + " of 2026-01-" + std::to_string(i % 31) + '\n';
    for (const std::string& text : {std::string(), std::string("short"), std::string(3'000, 'x'),
                                    prose.substr(0, 1'000), prose.substr(0, 5'000), prose})
        seeds.emplace_back(compressLZFSE(text).view());
    seeds.push_back(std::string("bvx-\5\0\0\0plainbvx$", 17));
    seeds.push_back(seeds[1].substr(0, seeds[1].size() - 4) + seeds[3]); // several blocks
    seeds.push_back("bvx1" + std::string(766, '\0') + "bvx$");
    return seeds;
}

/// A stream is refused in words or gives what it promises, and no more than there is room for. Every text comes back.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view input = bytesOf(data, size);
    try {
        const ByteBuffer bytes = decompressLZFSE(std::string(input), limit);
        require(bytes.size() <= limit, "more than there is room for");
        if (bytes.size() > 0)
            try {
                decompressLZFSE(std::string(input), bytes.size() - 1);
                require(false, "takes more room than it was given");
            } catch (const CompressionError&) {
            }
    } catch (const CompressionError&) {
    }
    const ByteBuffer packed = compressLZFSE(input);
    require(decompressLZFSE(std::string(packed.view()), size).view() == input, "does not come back");
    return 0;
}
