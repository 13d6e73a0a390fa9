#pragma once

#include <cstdint>
#include <filesystem>

namespace quillorn {

/// How much a sample store holds. Beside its tasks it has 200 projects, 20 clients and 50 tags; every task has two tags
/// and five time entries, every second one a comment, every fifth stands under another, and about a tenth of all tasks
/// is in archived projects or belongs to archived clients.
struct SampleSize {
    int tasks = 10'000;
};

/// Makes a new store of invented work in `file`, which must not exist. The same size and seed give the same store. No
/// time entry runs, so that lists depend on the present moment in isOverdue only. Throws StoreError.
void makeSampleStore(const std::filesystem::path& file, const SampleSize& size, std::uint64_t seed = 1);

} // namespace quillorn
