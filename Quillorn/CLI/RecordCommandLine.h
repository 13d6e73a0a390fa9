#pragma once

#include "CLI/CommandLine.h"

namespace quillorn {

void addClientCommands(CLI::App& app, Action& chosen);
void addProjectCommands(CLI::App& app, Action& chosen);
void addGroupCommands(CLI::App& app, Action& chosen);
void addNoteCommands(CLI::App& app, Action& chosen);
void addTagCommands(CLI::App& app, Action& chosen);

} // namespace quillorn
