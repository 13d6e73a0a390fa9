#include "Views/TaskListTexts.h"

#include "Views/ContentView.h"

#include <fmt/core.h>

namespace quillorn {

namespace {

EmptyState unfiltered(const TaskFilter& filter, std::string_view tagName) {
    switch (filter.kind) {
    case TaskFilter::Kind::today:
        return {"calendar", "Nothing Needs You Today",
                "Tasks that are due today, overdue, or in progress show up here."};
    case TaskFilter::Kind::upcoming:
        return {"calendar.badge.clock", "Nothing Due This Week", "Tasks due in the next 7 days show up here."};
    case TaskFilter::Kind::tag:
        return {"tag", fmt::format("No Tasks Tagged “{}”", tagName),
                "Tag a task from its context menu or detail view."};
    case TaskFilter::Kind::all:
    case TaskFilter::Kind::project:
    case TaskFilter::Kind::client:
        break;
    }
    return {"tray.full.fill", "No Open Tasks", "Add a task, or turn on Show Completed in View Options."};
}

} // namespace

EmptyState emptyTaskList(const TaskFilter& filter, std::string_view tagName, TaskNarrowing narrowing) {
    EmptyState state = unfiltered(filter, tagName);
    state.action = "Add Task";
    state.command = commands::newTask;
    if (narrowing.hasMeeting) {
        state.symbol = meetingSymbol;
        state.title = "No Tasks From This Meeting";
        state.text = "Its tasks may be completed — turn on Show Completed in View Options.";
    }
    if (narrowing.isSearching) {
        state.text = "Nothing matches your search.";
    }
    if (narrowing.hasMeeting || narrowing.isSearching) {
        state.action = "Clear Filter";
        state.command = {};
    }
    return state;
}

std::string doneToggleTitle(bool isOpen, std::size_t count) {
    return isOpen ? "Hide done tasks" : fmt::format("Show {} done tasks", count);
}

} // namespace quillorn
