#pragma once

#include "Views/TaskFilter.h"

#include <string>
#include <string_view>

namespace quillorn {

/// What a screen says where it has nothing to show.
struct EmptyState {
    std::string symbol;
    std::string title;
    std::string text;
    /// What the button says; empty for none.
    std::string action{};
    /// The command that it gives; empty for one of the screen's own.
    std::string_view command{};

    friend bool operator==(const EmptyState&, const EmptyState&) = default;
};

/// How the list that shows nothing was narrowed.
struct TaskNarrowing {
    bool isSearching = false;
    bool hasMeeting = false;
};

/// `tagName` is that of a tag's list.
EmptyState emptyTaskList(const TaskFilter& filter, std::string_view tagName, TaskNarrowing narrowing);

/// The row in front of the done tasks: "Show 3 done tasks", "Hide done tasks".
std::string doneToggleTitle(bool isOpen, std::size_t count);

inline constexpr std::string_view meetingSymbol = "person.2.wave.2";

} // namespace quillorn
