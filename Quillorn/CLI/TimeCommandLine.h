#pragma once

#include "CLI/CommandLine.h"

namespace quillorn {

/// The commands that have to do with time, with what was done, and with all data as a file.
void addTimeCommands(CLI::App& app, Action& chosen);

} // namespace quillorn
