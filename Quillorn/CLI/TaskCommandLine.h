#pragma once

#include "CLI/CommandLine.h"

namespace quillorn {

void addTaskCommands(CLI::App& app, Action& chosen);

} // namespace quillorn
