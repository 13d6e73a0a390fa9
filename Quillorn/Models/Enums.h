#pragma once

#include "Store/EntityType.h"

#include <string>
#include <string_view>

namespace quillorn {

/// The workflow state of a task. Whether a task is completed is told by its completion date, not by this.
enum class TaskStatus { todo = 0, inProgress = 1, review = 2, done = 3 };

enum class TaskPriority { low = 0, medium = 1, high = 2, urgent = 3 };

/// What completing a parent does to its subtasks. Kept as a setting, and read by no rule so far.
enum class SubtaskCompletionBehavior {
    askEveryTime = 0,
    completeSubtasks = 1,
    leaveSubtasks = 2,
    blockUntilComplete = 3
};

enum class ChatRole { system = 0, user = 1, assistant = 2 };

template <>
struct EnumCases<TaskStatus> {
    static constexpr int count = 4;
};
template <>
struct EnumCases<TaskPriority> {
    static constexpr int count = 4;
};
template <>
struct EnumCases<SubtaskCompletionBehavior> {
    static constexpr int count = 4;
};
template <>
struct EnumCases<ChatRole> {
    static constexpr int count = 3;
};

std::string_view label(TaskStatus status);
/// The name of the platform symbol.
std::string_view symbol(TaskStatus status);
std::string_view label(TaskPriority priority);
std::string_view mark(TaskPriority priority);
/// The mark, one blank and the name.
std::string menuLabel(TaskPriority priority);
std::string_view label(SubtaskCompletionBehavior behavior);
/// The sentence shown under the picker.
std::string_view explanation(SubtaskCompletionBehavior behavior);

} // namespace quillorn
