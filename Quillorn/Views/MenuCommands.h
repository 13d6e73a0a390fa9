#pragma once

#include "Views/ContentView.h"

#include <string_view>

namespace quillorn {

/// A command of the menu.
struct MenuCommand {
    std::string_view name;
    std::string_view title;
    /// As the toolkit writes them; Control stands for Command, Alt for Option.
    std::string_view keys;
    /// Whether it goes out as a notification of its name; the others are the window's own.
    bool isPosted = false;
    /// Whether a line stands above it.
    bool beginsPart = false;
};

/// Keys that mean something in one place alone.
struct PlaceKeys {
    std::string_view place;
    std::string_view title;
    std::string_view keys;
};

namespace commands {
inline constexpr std::string_view quickAdd = "quickAdd";
inline constexpr std::string_view undo = "undo";
inline constexpr std::string_view redo = "redo";
inline constexpr std::string_view goTo = "goTo";
} // namespace commands

/// All of them, in the order of the menu.
inline constexpr MenuCommand menuCommands[] = {
    {commands::newClient, "New Client", "Ctrl+Alt+Shift+N", true},
    {commands::newProject, "New Project", "Ctrl+Shift+N", true},
    {commands::newTask, "New Task", "Ctrl+N", true},
    {commands::newNote, "New Note", "Ctrl+Alt+N", true},
    {commands::quickAdd, "Quick Add…", "Ctrl+Shift+A"},
    {commands::undo, "Undo", "Ctrl+Z", false, true},
    {commands::redo, "Redo", "Ctrl+Shift+Z"},
    {commands::importReminders, "Import from Reminders…", "Ctrl+Shift+I", true, true},
    {commands::toggleTimer, "Start/Stop Timer", "Ctrl+T", true},
    {commands::toggleTaskComplete, "Complete Task", "Ctrl+Return", true},
    {commands::logTime, "Log Time…", "Ctrl+L", true},
    {commands::showAllTasks, "Show All Tasks", "Ctrl+1", true, true},
    {commands::showToday, "Show Today", "Ctrl+2", true},
    {commands::showUpcoming, "Show Upcoming", "Ctrl+3", true},
    {commands::goTo, "Go To…", "Ctrl+K", false, true},
    {"search", "Search", "Ctrl+F"},
    {"nextColumn", "Next Column", "F6"},
    {"toggleSidebar", "Sidebar", "F9"},
    {"showKeys", "Keys", "Ctrl+?", false, true},
    {"settings", "Settings…", "Ctrl+,"},
    {"quit", "Quit", "Ctrl+Q"},
};

inline constexpr PlaceKeys placeKeys[] = {
    {"Task list", "Complete or reopen", "Space"},
    {"Task list", "Show the task", "Enter"},
    {"Task list", "Select several", "Ctrl+Space, Ctrl+Click"},
    {"Task list", "Open or close subtasks", "Right, Left"},
    {"Task list", "Delete", "Delete"},
    {"Board", "Move to the next or last column", "Alt+Right, Alt+Left"},
    {"Sidebar", "Rename", "F2"},
    {"Sidebar", "Move a project or a group", "Alt+Up, Alt+Down"},
    {"Sidebar", "Open or close", "Right, Left"},
    {"Everywhere", "Back from the detail, close what is open", "Esc"},
    {"Everywhere", "Next control, last control", "Tab, Shift+Tab"},
    {"Everywhere", "Menu of a row", "Menu, Shift+F10"},
    {"Everywhere", "Menu of all commands", "F10"},
};

} // namespace quillorn
