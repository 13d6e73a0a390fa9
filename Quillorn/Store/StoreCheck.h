#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace quillorn {

class RandomSource;

/// What a look at a store file showed.
struct StoreCheck {
    /// What is wrong, in SQLite's words; empty for a sound one.
    std::string fault;
    /// Whether that is the file's own fault. Otherwise something kept us from looking, and the file may be sound.
    bool isDamaged = false;
    /// As Schema has them; 0 where the file is too damaged to tell.
    int applicationId = 0;
    int version = 0;
    /// The first column of each row that the question brought.
    std::vector<std::string> answers{};
};

/// Reads all of a store that others may be using. Changes nothing and makes no file beside it. `question` is a SELECT
/// to put to a sound one; where the store has no such tables there is no answer.
StoreCheck checkStore(const std::filesystem::path& file, RandomSource& random, const std::string& question = {});

/// Of the library that is in use.
std::string sqliteVersion();

} // namespace quillorn
