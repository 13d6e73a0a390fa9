import QtQuick
import QtQuick.Layouts
import QuillornStyle

/// The subtasks of a task, with a line to add one.
ColumnLayout {
    id: root

    property QtObject task

    signal opened(string kind, string record)

    spacing: 10

    RowLayout {
        Layout.fillWidth: true
        Layout.leftMargin: 20
        Layout.rightMargin: 20
        spacing: 10

        Label {
            text: root.task?.texts.subtasksTitle ?? ""
            font.weight: Font.DemiBold
            Accessible.role: Accessible.Heading
        }
        Label {
            text: root.task?.words.subtasks ?? ""
            color: Theme.secondaryText
        }
        ProgressBar {
            Layout.fillWidth: true
            visible: (root.task?.words.subtasks ?? "") !== ""
            value: root.task?.words.progress ?? 0
        }
    }
    LayoutRepeater {
        model: root.task?.subtasks ?? null

        SubtaskRow {
            Layout.fillWidth: true
            Layout.leftMargin: 14
            Layout.rightMargin: 14
            onToggled: root.task.toggleSubtask(recordId)
            onPicked: root.opened("task", recordId)
        }
    }
    TextField {
        Layout.fillWidth: true
        Layout.leftMargin: 20
        Layout.rightMargin: 20
        symbol: "plus"
        placeholderText: "Add Subtask"
        onAccepted: {
            root.task.addSubtask(text);
            clear();
        }
    }
}
