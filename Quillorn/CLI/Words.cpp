#include "CLI/Words.h"

#include <array>
#include <fmt/format.h>
#include <fmt/ranges.h>
#include <stdexcept>

namespace quillorn {

namespace {

constexpr std::array<std::string_view, 4> statusNames = {"todo", "inProgress", "review", "done"};
constexpr std::array<std::string_view, 4> priorityNames = {"low", "medium", "high", "urgent"};

/// Small letters and digits alone.
std::string bare(std::string_view word) {
    std::string text;
    for (const char each : word)
        if (each >= 'A' && each <= 'Z')
            text += static_cast<char>(each - 'A' + 'a');
        else if (each != ' ' && each != '-' && each != '_')
            text += each;
    return text;
}

template <class Enum>
Enum require(std::string_view word, const std::array<std::string_view, 4>& names, std::string_view what) {
    for (std::size_t index = 0; index < names.size(); ++index)
        if (bare(word) == bare(names[index]))
            return static_cast<Enum>(index);
    throw std::runtime_error(fmt::format("there is no {} \"{}\"; there are: {}", what, word, fmt::join(names, ", ")));
}

} // namespace

std::string joined(const std::vector<std::string>& words) {
    return fmt::format("{}", fmt::join(words, " "));
}

std::string quotedForShell(const std::string& text) {
    if (text.find_first_not_of("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789_-./") ==
        std::string::npos)
        return text;
    std::string quoted = "'";
    for (const char character : text)
        quoted += character == '\'' ? "'\\''" : std::string(1, character);
    return quoted + "'";
}

When requireWhen(std::string_view text, Date now, const Calendar& calendar) {
    if (const auto when = readWhen(text, now, calendar))
        return *when;
    throw std::runtime_error(
        fmt::format("\"{}\" is no date; 2026-01-31, 2026-01-31T09:05, today, friday, \"in 3 days\", "
                    "\"tomorrow 09:05\" or 9pm would be one",
                    text));
}

std::string_view caseName(TaskStatus status) {
    return statusNames[static_cast<std::size_t>(status)];
}
std::string_view caseName(TaskPriority priority) {
    return priorityNames[static_cast<std::size_t>(priority)];
}

TaskStatus requireStatus(std::string_view word) {
    return require<TaskStatus>(word, statusNames, "status");
}
TaskPriority requirePriority(std::string_view word) {
    return require<TaskPriority>(word, priorityNames, "priority");
}

} // namespace quillorn
