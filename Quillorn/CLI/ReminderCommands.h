#pragma once

#include "CLI/Commands.h"

#include <optional>
#include <string>
#include <vector>

namespace quillorn {

/// What `quillorn remind` and `quillorn remind-update` are told of a reminder.
struct RemindOptions {
    std::vector<std::string> words;
    std::string task;
    std::optional<std::string> title;
    std::optional<std::string> list;
    std::optional<std::string> note;
    std::optional<std::string> due;
    std::optional<bool> isFlagged;
    std::optional<bool> isDone;
    std::vector<std::string> tags;
    std::vector<std::string> urls;
    bool json = false;
};

/// Print the sentence that would be spoken.
ExitStatus remind(const RemindOptions& options, const ProcessInfo& process);
ExitStatus updateReminder(const RemindOptions& options, const ProcessInfo& process);

/// The import of reminders.
ExitStatus listReminderLists(bool json, const ProcessInfo& process);
ExitStatus chooseReminderLists(const std::vector<std::string>& names, const ProcessInfo& process);
ExitStatus showReminderImport(bool json, const ProcessInfo& process);
ExitStatus runReminderImport(bool json, const ProcessInfo& process);
ExitStatus recheckReminders(bool json, const ProcessInfo& process);
/// Of the chosen lists where none is named. Asks at a terminal, unless it is to print JSON.
ExitStatus reviewReminders(const std::vector<std::string>& lists, bool json, const ProcessInfo& process);
/// The file, or standard input for "-".
ExitStatus importReminderRows(const std::string& file, bool json, const ProcessInfo& process);

} // namespace quillorn
