#include "Models/Enums.h"

#include <array>

namespace quillorn {

namespace {

template <class Row, class Enum>
const Row& row(const std::array<Row, EnumCases<Enum>::count>& table, Enum value) {
    return table[static_cast<std::size_t>(value)];
}

struct StatusTexts {
    std::string_view label, symbol;
};
constexpr std::array<StatusTexts, 4> statusTexts{{
    {"To Do", "circle"},
    {"In Progress", "circle.lefthalf.filled"},
    {"Review", "eye.circle"},
    {"Done", "checkmark.circle.fill"},
}};

struct PriorityTexts {
    std::string_view name, mark;
};
constexpr std::array<PriorityTexts, 4> priorityTexts{{
    {"Low", "🔵"},
    {"Medium", "🟠"},
    {"High", "❗"},
    {"Urgent", "🔥"},
}};

struct BehaviorTexts {
    std::string_view label, explanation;
};
constexpr std::array<BehaviorTexts, 4> behaviorTexts{{
    {"Ask every time", "Prompt when completing a parent with incomplete subtasks"},
    {"Complete all subtasks", "Automatically complete all subtasks when parent is completed"},
    {"Leave subtasks as-is", "Complete only the parent, subtasks remain unchanged"},
    {"Block until subtasks complete", "Prevent completing parent until all subtasks are done"},
}};

} // namespace

std::string_view label(TaskStatus status) {
    return row(statusTexts, status).label;
}
std::string_view symbol(TaskStatus status) {
    return row(statusTexts, status).symbol;
}
std::string_view label(TaskPriority priority) {
    return row(priorityTexts, priority).name;
}
std::string_view mark(TaskPriority priority) {
    return row(priorityTexts, priority).mark;
}
std::string menuLabel(TaskPriority priority) {
    return std::string(mark(priority)) + " " + std::string(label(priority));
}
std::string_view label(SubtaskCompletionBehavior behavior) {
    return row(behaviorTexts, behavior).label;
}
std::string_view explanation(SubtaskCompletionBehavior behavior) {
    return row(behaviorTexts, behavior).explanation;
}

} // namespace quillorn
