#pragma once

#include "Models/Enums.h"
#include "Platform/Date.h"

#include <optional>
#include <string>
#include <vector>

namespace quillorn {

/// What a sentence says of a new task.
struct ParsedTaskResult {
    std::string title;
    std::optional<std::string> description;
    std::optional<Date> dueDate;
    /// Whether the sentence gave a time of day; else `dueDate` is the start of the day.
    bool dueHasTime = false;
    std::optional<TaskPriority> priority;
    std::optional<std::string> projectName;
    std::vector<std::string> tagNames;
};

} // namespace quillorn
