import QtQuick

/// The task or the note beside its list.
Item {
    id: root

    property var confirm

    Late {
        anchors.fill: parent
        visible: wanted
        wanted: Desk.task !== null
        sourceComponent: TaskDetailPane {
            task: Desk.task
            statuses: Desk.statuses
            priorities: Desk.priorities
            confirm: root.confirm
            onOpened: (kind, record) => Desk.show(kind, record)
            onEntryEdited: entry => Desk.editEntry(entry)
            onClosed: Desk.selectTask("")
        }
    }
    Late {
        anchors.fill: parent
        visible: wanted
        wanted: Desk.task === null && Desk.note !== null
        sourceComponent: NotePane {
            note: Desk.note
            confirm: root.confirm
            onOpened: (kind, record) => Desk.show(kind, record)
            onClosed: Desk.selectNote("")
        }
    }
}
