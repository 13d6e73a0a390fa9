#pragma once

#include "CLI/CommandLine.h"

namespace quillorn {

void addTimeCommands(CLI::App& app, Action& chosen);
/// What was done, and search.
void addHistoryCommands(CLI::App& app, Action& chosen);
/// All data as a file.
void addExportCommands(CLI::App& app, Action& chosen);

} // namespace quillorn
