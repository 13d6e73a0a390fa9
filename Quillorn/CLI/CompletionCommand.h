#pragma once

#include "CLI/CommandLine.h"

namespace quillorn {

/// The hidden command that the completions of the shells call: the records of a kind ("tasks", "projects", "clients",
/// "tags", "groups", "notes") that what was typed so far may mean, each a line of what names it, a TAB and what it is.
/// Tasks and notes are named by their ids. Says nothing where anything is wrong.
void addCompletionCommand(CLI::App& app, Action& chosen);

} // namespace quillorn
