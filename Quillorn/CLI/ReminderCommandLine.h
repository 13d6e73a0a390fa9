#pragma once

#include "CLI/CommandLine.h"

namespace quillorn {

/// The commands that have to do with reminders: remind, remind-update and reminders.
void addReminderCommands(CLI::App& app, Action& chosen);

} // namespace quillorn
