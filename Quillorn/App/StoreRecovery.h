#pragma once

#include <filesystem>
#include <string>

namespace quillorn {

/// What is shown in place of the program when the store can't be opened.
struct StoreRecovery {
    /// Why the store can't be opened.
    std::string message;
    std::filesystem::path backupsFolder;

    /// All of it, for a terminal.
    std::string text() const;
};

} // namespace quillorn
