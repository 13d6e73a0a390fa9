import QtQuick
import QtQuick.Layouts
import QuillornStyle

/// Logs time, or changes an entry.
Sheet {
    id: root

    property QtObject entry

    title: entry?.windowTitle ?? ""
    action: entry?.words.saveButton ?? ""
    canSave: entry !== null && entry.fault === ""
    problem: entry?.fault ?? ""
    onSave: if (entry.save())
        accept()

    Timer {
        running: root.opened && (root.entry?.isRunning ?? false)
        interval: 1000
        repeat: true
        onTriggered: root.entry.tick()
    }
    FormRow {
        label: root.entry?.words.projectLabel ?? ""

        RecordCombo {
            Layout.fillWidth: true
            none: root.entry?.words.projectPlaceholder ?? ""
            records: root.entry?.projects ?? []
            chosen: root.entry?.project ?? ""
            onPicked: record => root.entry.project = record
            Accessible.name: root.entry?.words.projectLabel ?? ""
        }
    }
    FormRow {
        label: root.entry?.words.taskLabel ?? ""

        RecordCombo {
            Layout.fillWidth: true
            records: root.entry?.tasks ?? []
            chosen: root.entry?.task ?? ""
            onPicked: record => root.entry.task = record
            Accessible.name: root.entry?.words.taskLabel ?? ""
        }
    }
    FormRow {
        label: root.entry?.words.dateLabel ?? ""

        TextField {
            Layout.preferredWidth: 130
            text: root.entry?.day ?? ""
            onEditingFinished: isWrong = !root.entry.setDay(text)
            Accessible.name: root.entry?.words.dateLabel ?? ""
        }
    }
    FormRow {
        label: root.entry?.timeLabel ?? ""

        TextField {
            Layout.preferredWidth: 80
            text: root.entry?.start ?? ""
            onEditingFinished: isWrong = !root.entry.setStart(text)
            Accessible.name: (root.entry?.timeLabel ?? "") + " from"
        }
        Label {
            text: "–"
            visible: !(root.entry?.isRunning ?? false)
        }
        TextField {
            Layout.preferredWidth: 80
            visible: !(root.entry?.isRunning ?? false)
            text: root.entry?.end ?? ""
            onEditingFinished: isWrong = !root.entry.setEnd(text)
            Accessible.name: (root.entry?.timeLabel ?? "") + " to"
        }
        Label {
            visible: root.entry?.isRunning ?? false
            text: root.entry?.words.runningLabel ?? ""
            color: Theme.green
        }
        Label {
            Layout.fillWidth: true
            text: root.entry?.duration ?? ""
            color: root.entry?.isWarning ? Theme.red : Theme.secondaryText
            elide: Text.ElideRight
        }
    }
    FormRow {
        label: root.entry?.words.quickLabel ?? ""
        visible: !(root.entry?.isRunning ?? false)

        Flow {
            Layout.fillWidth: true
            spacing: 6

            LayoutRepeater {
                model: root.entry?.quick ?? []

                Chip {
                    required property var modelData

                    text: modelData.label
                    onClicked: root.entry.chooseQuick(modelData.minutes)
                }
            }
        }
    }
    RowLayout {
        Layout.fillWidth: true
        visible: (root.entry?.overlap ?? "") !== ""
        spacing: 8

        SymbolIcon {
            name: root.entry?.words.overlapSymbol ?? ""
            color: Theme.amber
        }
        Label {
            Layout.fillWidth: true
            text: root.entry?.overlap ?? ""
            color: Theme.amber
            wrapMode: Text.Wrap
        }
    }
    FormRow {
        label: root.entry?.words.titleLabel ?? ""

        TextField {
            Layout.fillWidth: true
            text: root.entry?.title ?? ""
            placeholderText: root.entry?.words.titlePlaceholder ?? ""
            onTextEdited: root.entry.title = text
        }
    }
    FormRow {
        label: root.entry?.words.notesLabel ?? ""

        TextArea {
            Layout.fillWidth: true
            text: root.entry?.notes ?? ""
            placeholderText: root.entry?.words.notesPlaceholder ?? ""
            onTextChanged: if (activeFocus)
                root.entry.notes = text
        }
    }
}
