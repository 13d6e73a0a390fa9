#pragma once

#include "CLI/CommandLine.h"

namespace quillorn {

/// The commands that have to do with a model: ai, chat, summary and parse.
void addAICommands(CLI::App& app, Action& chosen);

} // namespace quillorn
