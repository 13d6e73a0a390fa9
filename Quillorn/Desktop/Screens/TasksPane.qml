import QtQuick

/// The column of a smart list, or of whatever tag is selected.
LatePane {
    id: root

    /// The key of the smart list; none for tags.
    property string list
    property var confirm
    property Item carrier
    readonly property var smartLists: ["today", "upcoming", "allTasks"]

    /// The keyboard goes on in the detail.
    signal entered

    // In one expression, as another property might still be that of the list before.
    offered: Desk.column === "taskList" && (list ? Desk.selection === list : !smartLists.includes(Desk.selection)) ? Desk.tasks : null
    sourceComponent: TaskListPane {
        tasks: root.held
        confirm: root.confirm
        carrier: root.carrier
        current: Desk.selectedTask
        onOpened: task => Desk.selectTask(task)
        onEntered: root.entered()
        onNewTask: Desk.command("newTask")
        onStartTimer: task => Desk.timer.start(task)
    }
}
