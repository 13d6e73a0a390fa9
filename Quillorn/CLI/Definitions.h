#pragma once

#include "CLI/CommandLine.h"

#include <memory>
#include <string>
#include <vector>

// NOLINTNEXTLINE(readability-identifier-naming): the name is the library's
namespace CLI {
class Option;
}

// What definitions of commands have in common.

namespace quillorn {

CLI::App* addCommand(CLI::App* parent, const char* name, const char* words);
/// A command that only has others below it.
CLI::App* addParent(CLI::App& app, const char* name, const char* words);

/// What happens when the command line has the command; it may throw a CLI::ParseError.
void onGiven(CLI::App* command, std::function<void()> handle);

/// Runs `run(options, process)` where the command is given.
template <class Options, class Run>
void runs(CLI::App* command, Action& chosen, const std::shared_ptr<Options>& options, Run run) {
    onGiven(command, [=, &chosen] { chosen = [=](const ProcessInfo& process) { return run(*options, process); }; });
}

/// All the arguments that follow, one at least.
CLI::Option* addWords(CLI::App* command, const char* name, std::vector<std::string>& words, const char* summary);
/// One argument.
CLI::Option* addWord(CLI::App* command, const char* name, std::string& word, const char* summary);
/// An option that may be given again, one value each time.
CLI::Option* addRepeated(CLI::App* command, const char* name, std::vector<std::string>& values, const char* type,
                         const char* summary);
void addJson(CLI::App* command, bool& json);
void addYes(CLI::App* command, bool& isConfirmed);

/// Throws unless one of the options was given.
void requireOne(const CLI::App* command, const std::vector<const char*>& names);

} // namespace quillorn
