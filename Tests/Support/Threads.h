#pragma once

#include <thread>
#include <vector>

namespace quillorn {

/// Runs `work` on that many threads at once, each with its number, and waits for all of them.
template <typename Work>
void onThreads(int count, const Work& work) {
    std::vector<std::jthread> threads;
    for (int number = 0; number < count; ++number)
        threads.emplace_back([&work, number] { work(number); });
}

} // namespace quillorn
