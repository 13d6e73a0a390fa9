#pragma once

#include "CLI/Commands.h"

#include <functional>
#include <memory>
#include <string>

// NOLINTNEXTLINE(readability-identifier-naming): the name is the library's
namespace CLI {
class App;
}

namespace quillorn {

/// What a command line asks for, ready to run.
using Action = std::function<ExitStatus(const ProcessInfo&)>;

/// Every command and option there is: what the program parses, and what its man page and completions are made of.
/// Parsing sets `chosen` to the command that was given, and leaves it empty when none was.
std::shared_ptr<CLI::App> defineCommands(Action& chosen);

/// What to say to `word` where `app` has no such command.
std::string noSuchCommand(const CLI::App& app, const std::string& word);

} // namespace quillorn
