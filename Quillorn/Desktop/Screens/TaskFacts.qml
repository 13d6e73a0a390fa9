import QtQuick
import QtQuick.Layouts
import QuillornStyle

/// When a task is due, where it belongs, and where it comes from.
GridLayout {
    id: root

    property QtObject task

    columns: 2
    columnSpacing: 14
    rowSpacing: 4

    FieldLabel {
        symbol: "calendar"
        text: "Due"
    }
    TextField {
        id: due

        readonly property string stored: root.task?.words.due ?? ""

        Layout.fillWidth: true
        Layout.maximumWidth: 240
        placeholderText: "None"
        text: stored
        onStoredChanged: if (!activeFocus)
            text = stored
        color: root.task?.words.isOverdue ? Theme.red : Theme.text
        onEditingFinished: {
            if (text === stored)
                return;
            isWrong = !root.task.setDue(text);
            if (!isWrong)
                text = Qt.binding(() => stored);
        }
        Keys.onEscapePressed: {
            isWrong = false;
            text = stored;
        }
        Accessible.name: "Due"
    }
    FieldLabel {
        symbol: "folder"
        text: "Project"
    }
    MenuChip {
        readonly property var step: (root.task?.path ?? []).filter(step => step.kind === "project")[0]

        text: step ? step.name : "None"
        tone: Theme.text
        onOpenedMenu: records = [{
                "id": "",
                "name": "None"
            }].concat(root.task.projectChoices())
        onRecordChosen: record => root.task.move(record)
    }
    FieldLabel {
        symbol: "clock"
        text: "Created"
    }
    Label {
        text: root.task?.words.created ?? ""
    }
    FieldLabel {
        symbol: "checkmark.circle"
        text: "Completed"
        visible: (root.task?.words.completed ?? "") !== ""
    }
    Label {
        visible: text !== ""
        text: root.task?.words.completed ?? ""
    }
    FieldLabel {
        symbol: "link"
        text: "Source"
        visible: (root.task?.words.source ?? "") !== ""
    }
    AbstractChip {
        Layout.fillWidth: true
        visible: source.text !== ""
        enabled: /^(https?|mailto):/i.test(root.task?.words.sourceURL ?? "")
        implicitHeight: source.implicitHeight
        Accessible.role: Accessible.Link
        Accessible.name: source.text
        onClicked: Qt.openUrlExternally(root.task.words.sourceURL)
        contentItem: Label {
            id: source

            text: root.task?.words.source ?? ""
            color: parent.enabled ? Theme.accent : Theme.text
            elide: Text.ElideRight
        }
        background: FocusFrame {}
    }
}
