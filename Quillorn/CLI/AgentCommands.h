#pragma once

#include "CLI/CommandLine.h"

namespace quillorn {

/// The commands that hand work to coding agents: brief and agent.
void addAgentCommands(CLI::App& app, Action& chosen);

} // namespace quillorn
