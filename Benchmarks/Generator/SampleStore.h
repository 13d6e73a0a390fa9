#pragma once

#include <chrono>
#include <cstdint>
#include <filesystem>

namespace quillorn {

/// How much a sample store holds. Beside its tasks it has 200 projects, 20 clients and 50 tags; every task has two tags
/// and five time entries, every second one a comment, every fifth stands under another, and about a tenth of all tasks
/// is in archived projects or belongs to archived clients. What fell due is done, but for one task in fifty.
struct SampleSize {
    int tasks = 10'000;
};

/// Makes a new store of the invented work of 900 days up to `today` in `file`, which must not exist. The same size, day
/// and seed give the same store. No time entry runs, so that lists depend on the present moment in isOverdue only.
/// Throws StoreError.
void makeSampleStore(const std::filesystem::path& file, const SampleSize& size, std::chrono::sys_days today,
                     std::uint64_t seed = 1);

} // namespace quillorn
