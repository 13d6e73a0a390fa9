import QtQuick
import QtQuick.Controls
import QuillornStyle

/// All commands with their keys. Control stands for Command, Alt for Option.
Menu {
    id: root

    signal settingsWanted
    signal searchWanted
    signal nextColumnWanted
    signal sidebarToggled

    CommandItem {
        text: "New Client"
        keys: "Ctrl+Alt+Shift+N"
        onTriggered: Desk.command("newClient")
    }
    CommandItem {
        text: "New Project"
        keys: "Ctrl+Shift+N"
        onTriggered: Desk.command("newProject")
    }
    CommandItem {
        text: "New Task"
        keys: "Ctrl+N"
        onTriggered: Desk.command("newTask")
    }
    CommandItem {
        text: "New Note"
        keys: "Ctrl+Alt+N"
        onTriggered: Desk.command("newNote")
    }
    MenuSeparator {}
    CommandItem {
        text: Desk.undoTitle
        keys: "Ctrl+Z"
        enabled: Desk.canUndo
        onTriggered: Desk.undo()
    }
    CommandItem {
        text: Desk.redoTitle
        keys: "Ctrl+Shift+Z"
        enabled: Desk.canRedo
        onTriggered: Desk.redo()
    }
    MenuSeparator {}
    CommandItem {
        text: "Start/Stop Timer"
        keys: "Ctrl+T"
        onTriggered: Desk.command("toggleTimer")
    }
    CommandItem {
        text: "Complete Task"
        keys: "Ctrl+Return"
        onTriggered: Desk.command("toggleTaskComplete")
    }
    CommandItem {
        text: "Log Time…"
        keys: "Ctrl+L"
        onTriggered: Desk.command("logTime")
    }
    MenuSeparator {}
    CommandItem {
        text: "Show All Tasks"
        keys: "Ctrl+1"
        onTriggered: Desk.command("showAllTasks")
    }
    CommandItem {
        text: "Show Today"
        keys: "Ctrl+2"
        onTriggered: Desk.command("showToday")
    }
    CommandItem {
        text: "Show Upcoming"
        keys: "Ctrl+3"
        onTriggered: Desk.command("showUpcoming")
    }
    MenuSeparator {}
    CommandItem {
        text: "Search"
        keys: "Ctrl+F"
        onTriggered: root.searchWanted()
    }
    CommandItem {
        text: "Next Column"
        keys: "F6"
        onTriggered: root.nextColumnWanted()
    }
    CommandItem {
        text: "Sidebar"
        keys: "F9"
        onTriggered: root.sidebarToggled()
    }
    CommandItem {
        text: "Settings…"
        keys: "Ctrl+,"
        onTriggered: root.settingsWanted()
    }
    CommandItem {
        text: "Quit"
        keys: "Ctrl+Q"
        onTriggered: Qt.quit()
    }
}
