#pragma once

#include "CLI/Commands.h"

#include <optional>
#include <string>
#include <vector>

namespace quillorn {

struct TimerOptions {
    /// Absent where none was named.
    std::optional<std::string> task{};
    /// Also what other programs have started.
    bool all = false;
    /// Goes on showing it until it is interrupted.
    bool watches = false;
    std::string when{};
    bool json = false;
};

// The timer of the user's store, also while a server runs on it.
ExitStatus startTimer(const TimerOptions& options, const ProcessInfo& process);
ExitStatus stopTimer(const TimerOptions& options, const ProcessInfo& process);
/// Stops on the task that the timer runs on, or starts on it; without a task it stops.
ExitStatus toggleTimer(const TimerOptions& options, const ProcessInfo& process);
ExitStatus adjustTimer(const TimerOptions& options, const ProcessInfo& process);
ExitStatus showTimer(const TimerOptions& options, const ProcessInfo& process);

struct LogOptions {
    /// Empty where there is a project.
    std::string task{};
    std::string time{};
    std::optional<std::string> project{};
    std::optional<std::string> date{};
    std::optional<std::string> title{};
    std::optional<std::string> notes{};
    bool json = false;
};
ExitStatus logTime(const LogOptions& options, const ProcessInfo& process);

struct TimeListOptions {
    std::optional<std::string> from{}, to{}, task{}, project{}, client{};
    bool running = false;
    std::optional<std::size_t> limit{};
    bool json = false;
};
ExitStatus listTime(const TimeListOptions& options, const ProcessInfo& process);

struct TimeEditOptions {
    std::vector<std::string> entries{};
    std::optional<std::string> start{}, end{}, task{}, project{}, title{}, notes{};
    bool isConfirmed = false; // for the deletion
    bool json = false;
};
ExitStatus editTime(const TimeEditOptions& options, const ProcessInfo& process);
ExitStatus deleteTime(const TimeEditOptions& options, const ProcessInfo& process);

struct ReportOptions {
    enum class Form { table, csv, json, html };

    std::optional<std::string> from{}, to{}, client{}, project{};
    std::string by = "project";
    int rounding = 0; // in minutes
    Form form = Form::table;
};
ExitStatus reportTime(const ReportOptions& options, const ProcessInfo& process);

struct ActivityOptions {
    std::optional<std::string> client{};
    std::optional<int> days{};
    bool json = false;
};
ExitStatus showActivity(const ActivityOptions& options, const ProcessInfo& process);
/// What today has brought.
ExitStatus showDay(bool json, const ProcessInfo& process);
ExitStatus searchEverything(const std::vector<std::string>& words, bool json, const ProcessInfo& process);

/// Everything in the store as JSON, into a file for its owner only, or to standard output for "-".
ExitStatus exportEverything(const std::string& file, const ProcessInfo& process);

struct ImportOptions {
    /// "-" is standard input.
    std::string file;
    /// Says what would come, and changes nothing.
    bool isDryRun = false;
    bool json = false;
};
ExitStatus importEverything(const ImportOptions& options, const ProcessInfo& process);

} // namespace quillorn
