#pragma once

#include "Desktop/Appearance.h"

#include <optional>
#include <string>
#include <vector>

namespace quillorn {

/// What the desktop was started with.
struct DesktopOptions {
    /// A quillorn:// address to open; empty for none.
    std::string address;
    /// Whether to work in a throw-away store with sample data.
    bool isSample = false;
    /// Whether only the window in which a task is added is wanted.
    bool quickAdd = false;
    Appearance::Scheme scheme = Appearance::Scheme::system;

    /// The options; where the program is to end at once, its status, with everything said.
    static std::optional<int> read(std::vector<std::string> arguments, DesktopOptions& options);
};

} // namespace quillorn
