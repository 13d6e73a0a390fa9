#pragma once

#include "CLI/Commands.h"

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace quillorn {

struct AddOptions {
    std::vector<std::string> words;
    std::optional<std::string> project;
    std::optional<std::string> parent;
    std::optional<std::string> due;
    std::optional<std::string> priority;
    std::vector<std::string> tags;
    std::optional<std::string> description;
    bool isPlain = false;
    bool asksModel = false;
    bool json = false;
};
/// Makes a task of a sentence.
ExitStatus addTask(const AddOptions& options, const ProcessInfo& process);

struct ListOptions {
    std::string list = "all";
    std::optional<std::string> client;
    std::optional<std::string> project;
    std::optional<std::string> tag;
    std::optional<std::string> meeting;
    std::optional<std::string> search;
    std::string sort = "due";
    std::optional<std::string> group;
    bool showsCompleted = false;
    std::optional<std::size_t> limit;
    bool json = false;
};
ExitStatus listTasks(const ListOptions& options, const ProcessInfo& process);
ExitStatus showTask(const std::string& task, bool json, const ProcessInfo& process);
/// Today at a glance, for a terminal.
ExitStatus showToday(const ProcessInfo& process);

struct TasksOptions {
    std::vector<std::string> tasks;
    bool json = false;
};
ExitStatus completeTasks(const TasksOptions& options, bool isDone, const ProcessInfo& process);
ExitStatus duplicateTasks(const TasksOptions& options, const ProcessInfo& process);
ExitStatus deleteTasks(const TasksOptions& options, bool isConfirmed, const ProcessInfo& process);

struct EditTaskOptions : TasksOptions {
    std::optional<std::string> title;
    std::optional<std::string> description;
    /// "none" takes it away.
    std::optional<std::string> due;
    std::optional<std::string> priority;
    std::optional<std::string> status;
    std::optional<std::string> sourceTitle;
    std::optional<std::string> sourceURL;
};
ExitStatus editTasks(const EditTaskOptions& options, const ProcessInfo& process);

struct MoveOptions : TasksOptions {
    std::optional<std::string> project;
    bool leavesProject = false;
    std::optional<std::string> parent;
    bool leavesParent = false;
};
ExitStatus moveTasks(const MoveOptions& options, const ProcessInfo& process);

ExitStatus commentTask(const std::string& task, const std::vector<std::string>& words, bool json,
                       const ProcessInfo& process);

struct RetagOptions : TasksOptions {
    std::vector<std::string> added;
    std::vector<std::string> removed;
};
ExitStatus retagTasks(const RetagOptions& options, const ProcessInfo& process);

} // namespace quillorn
