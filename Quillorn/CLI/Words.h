#pragma once

#include "Models/Enums.h"
#include "Models/WhenPhrase.h"

#include <string>
#include <string_view>
#include <vector>

namespace quillorn {

/// What was typed in several words.
std::string joined(const std::vector<std::string>& words);

/// For a shell to take as one word.
std::string quotedForShell(const std::string& text);

/// readWhen; throws std::runtime_error that says what would be one.
When requireWhen(std::string_view text, Date now, const Calendar& calendar);

/// The word that JSON and pipes have: "todo", "inProgress", "review", "done".
std::string_view caseName(TaskStatus status);
/// "low", "medium", "high", "urgent".
std::string_view caseName(TaskPriority priority);
/// Case, blanks and dashes do not matter: "In progress" is one. Throw std::runtime_error that lists what there is.
TaskStatus requireStatus(std::string_view word);
TaskPriority requirePriority(std::string_view word);

} // namespace quillorn
