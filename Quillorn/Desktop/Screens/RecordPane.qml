import QtQuick
import QtQuick.Layouts
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
        list.item.focusList();
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
                    display: root.width < 480 * Theme.textScale ? TabButton.TextOnly : TabButton.TextBesideIcon
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
    LateTab {
        wanted: root.tab === "overview"
        sourceComponent: OverviewPane {
            record: root.record
            confirm: root.confirm
        }
    }
    LateTab {
        id: list

        wanted: root.tab === "tasks" && !board.checked
        sourceComponent: TaskListPane {
            tasks: visible ? Desk.tasks : null
            confirm: root.confirm
            current: Desk.selectedTask
            onOpened: task => Desk.selectTask(task)
            carrier: root.carrier
            onEntered: root.entered()
            onNewTask: Desk.command("newTask")
            onStartTimer: task => Desk.timer.start(task)
        }
    }
    LateTab {
        Layout.margins: 14
        wanted: root.tab === "tasks" && board.checked
        sourceComponent: BoardPane {
            record: visible ? root.record : null
            current: Desk.selectedTask
            carrier: root.carrier
            onOpened: task => Desk.selectTask(task)
        }
    }
    LateTab {
        wanted: root.tab === "projects"
        sourceComponent: ProjectsPane {
            record: visible ? root.record : null
            onOpened: project => Desk.show("project", project)
        }
    }
    LateTab {
        wanted: root.tab === "time"
        sourceComponent: TimePane {
            time: visible ? Desk.time : null
            confirm: root.confirm
            onEdited: entry => Desk.editEntry(entry)
        }
    }
    LateTab {
        wanted: root.tab === "notes"
        sourceComponent: NoteListPane {
            notes: visible ? Desk.notes : null
            confirm: root.confirm
            current: Desk.selectedNote
            onOpened: note => Desk.selectNote(note)
        }
    }
    LateTab {
        wanted: root.tab === "chat"
        sourceComponent: ChatPane {
            chat: visible ? Desk.chat : null
            confirm: root.confirm
        }
    }
}
