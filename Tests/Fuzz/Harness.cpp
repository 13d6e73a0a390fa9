#include "Fuzz/Harness.h"

#include "Support/TemporaryFolder.h"

#include <cstdio>
#include <cstdlib>

namespace quillorn {

void require(bool holds, std::string_view words) {
    if (holds)
        return;
    std::fprintf(stderr, "FAULT: %.*s\n", static_cast<int>(words.size()), words.data());
    std::abort();
}

} // namespace quillorn

extern "C" int LLVMFuzzerInitialize(int* count, char*** arguments) {
    if (*count != 3 || std::string_view((*arguments)[1]) != "--seeds")
        return 0;
    const std::filesystem::path folder = (*arguments)[2];
    std::filesystem::create_directories(folder);
    const std::vector<std::string> all = quillorn::seeds();
    for (std::size_t i = 0; i < all.size(); ++i)
        quillorn::writeFile(folder / ("seed-" + std::to_string(i)), all[i]);
    std::exit(0);
}
