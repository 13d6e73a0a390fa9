#include "Fuzz/Harness.h"

#include "Support/TemporaryFolder.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>

extern "C" std::size_t LLVMFuzzerMutate(std::uint8_t* data, std::size_t size, std::size_t maximumSize);

namespace quillorn {

namespace {

/// libFuzzer can't mutate before it has started.
bool isWritingSeeds = false;

} // namespace

void require(bool holds, std::string_view words) {
    if (holds)
        return;
    std::fprintf(stderr, "FAULT: %.*s\n", static_cast<int>(words.size()), words.data());
    std::abort();
}

std::string mutated(std::string text, std::size_t limit) {
    if (isWritingSeeds)
        return text;
    const std::size_t size = std::min(text.size(), limit);
    text.resize(limit);
    text.resize(LLVMFuzzerMutate(reinterpret_cast<std::uint8_t*>(text.data()), size, limit));
    return text;
}

} // namespace quillorn

extern "C" int LLVMFuzzerInitialize(int* count, char*** arguments) {
    if (*count != 3 || std::string_view((*arguments)[1]) != "--seeds")
        return 0;
    quillorn::isWritingSeeds = true;
    const std::filesystem::path folder = (*arguments)[2];
    std::filesystem::create_directories(folder);
    const std::vector<std::string> all = quillorn::seeds();
    for (std::size_t i = 0; i < all.size(); ++i)
        quillorn::writeFile(folder / ("seed-" + std::to_string(i)), all[i]);
    std::exit(0);
}
