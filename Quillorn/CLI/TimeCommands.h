#pragma once

#include "CLI/Commands.h"

#include <string>

namespace quillorn {

/// Everything in the store as JSON, into a file for its owner only, or to standard output for "-".
ExitStatus exportEverything(const std::string& file, const ProcessInfo& process);

struct ImportOptions {
    /// "-" is standard input.
    std::string file;
    /// Says what would come, and changes nothing.
    bool isDryRun = false;
    bool json = false;
};
ExitStatus importEverything(const ImportOptions& options, const ProcessInfo& process);

} // namespace quillorn
