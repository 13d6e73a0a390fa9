import QtQuick
import QtQuick.Layouts
import QuillornStyle

/// The time spent on a task, and its entries.
ColumnLayout {
    id: root

    property QtObject task

    signal entryEdited(string entry)

    spacing: 10

    RowLayout {
        Layout.fillWidth: true
        Layout.leftMargin: 20
        Layout.rightMargin: 20
        Layout.topMargin: 8

        Label {
            text: root.task?.texts.timeTitle ?? ""
            font.weight: Font.DemiBold
            Accessible.role: Accessible.Heading
        }
        Label {
            Layout.fillWidth: true
            text: root.task?.words.time ?? ""
            color: Theme.secondaryText
        }
        ClockText {
            visible: text !== ""
            text: root.task?.words.clock ?? ""
            color: Theme.green
        }
        ToolButton {
            tip: Desk.titles.logTime
            icon.name: "plus"
            onClicked: Desk.command("logTime")
        }
    }
    Rectangle {
        Layout.fillWidth: true
        Layout.leftMargin: 20
        Layout.rightMargin: 20
        visible: entries.count > 0
        implicitHeight: entryColumn.implicitHeight + 8
        radius: Theme.cardRadius
        color: Theme.card
        border.color: Theme.line

        ColumnLayout {
            id: entryColumn

            anchors.fill: parent
            anchors.margins: 4
            spacing: 0

            LayoutRepeater {
                id: entries

                model: root.task?.entries ?? null

                TaskEntryRow {
                    Layout.fillWidth: true
                    onPicked: root.entryEdited(recordId)
                }
            }
        }
    }
}
