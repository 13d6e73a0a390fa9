import QtQuick
import QtQuick.Layouts
import QtQuick.Controls
import QuillornStyle

/// A client or a project, by its tabs.
ColumnLayout {
    id: root

    property var confirm
    property Item carrier
    readonly property var record: Desk.record
    readonly property string tab: record?.tab ?? ""
    readonly property bool showsTasks: visible && tab === "tasks" && !board.checked

    signal entered

    function focusList() {
        list.focusList();
    }

    spacing: 0

    RowLayout {
        Layout.fillWidth: true
        Layout.leftMargin: 10
        Layout.rightMargin: 10
        Layout.topMargin: 2

        TabBar {
            Layout.fillWidth: true

            LayoutRepeater {
                model: root.record?.tabs ?? []

                TabButton {
                    required property var modelData

                    text: modelData.label
                    icon.name: modelData.symbol
                    checked: modelData.tag === root.tab
                    onClicked: root.record.tab = modelData.tag
                }
            }
        }
        ToolButton {
            id: board

            visible: root.tab === "tasks"
            checkable: true
            tip: "Board"
            icon.name: "rectangle.3.group"
        }
    }
    Rectangle {
        Layout.fillWidth: true
        implicitHeight: 1
        color: Theme.line
    }
    OverviewPane {
        Layout.fillWidth: true
        Layout.fillHeight: true
        visible: root.tab === "overview"
        record: root.record
        confirm: root.confirm
    }
    TaskListPane {
        id: list

        Layout.fillWidth: true
        Layout.fillHeight: true
        visible: root.tab === "tasks" && !board.checked
        tasks: visible ? Desk.tasks : null
        confirm: root.confirm
        current: Desk.selectedTask
        onOpened: task => Desk.selectTask(task)
        carrier: root.carrier
        onEntered: root.entered()
        onNewTask: Desk.command("newTask")
        onStartTimer: task => Desk.timer.start(task)
    }
    BoardPane {
        Layout.fillWidth: true
        Layout.fillHeight: true
        Layout.margins: 14
        visible: root.tab === "tasks" && board.checked
        record: visible ? root.record : null
        current: Desk.selectedTask
        carrier: root.carrier
        onOpened: task => Desk.selectTask(task)
    }
    ProjectsPane {
        Layout.fillWidth: true
        Layout.fillHeight: true
        visible: root.tab === "projects"
        record: visible ? root.record : null
        onOpened: project => Desk.show("project", project)
    }
    TimePane {
        Layout.fillWidth: true
        Layout.fillHeight: true
        visible: root.tab === "time"
        time: visible ? Desk.time : null
        confirm: root.confirm
        onEdited: entry => Desk.editEntry(entry)
    }
    NoteListPane {
        Layout.fillWidth: true
        Layout.fillHeight: true
        visible: root.tab === "notes"
        notes: visible ? Desk.notes : null
        confirm: root.confirm
        current: Desk.selectedNote
        onOpened: note => Desk.selectNote(note)
    }
    ChatPane {
        Layout.fillWidth: true
        Layout.fillHeight: true
        visible: root.tab === "chat"
        chat: visible ? Desk.chat : null
        confirm: root.confirm
    }
}
