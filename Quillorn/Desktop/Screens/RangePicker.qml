import QtQuick
import QtQuick.Layouts
import QuillornStyle

/// A month on which the first and the last day of a report are chosen.
Popup {
    id: root

    property QtObject chat

    contentItem: ColumnLayout {
        spacing: 8

        RowLayout {
            Layout.fillWidth: true

            ToolButton {
                tip: "Previous month"
                icon.name: "chevron.left"
                onClicked: root.chat.moveRange(-1)
            }
            Label {
                Layout.fillWidth: true
                horizontalAlignment: Text.AlignHCenter
                text: root.chat?.rangeTitle ?? ""
                font.weight: Font.DemiBold
            }
            ToolButton {
                tip: "Next month"
                icon.name: "chevron.right"
                onClicked: root.chat.moveRange(1)
            }
        }
        GridLayout {
            columns: 7
            rowSpacing: 2
            columnSpacing: 0

            LayoutRepeater {
                model: root.chat?.rangeDays ?? []

                AbstractChip {
                    id: day

                    required property var modelData
                    required property int index

                    implicitWidth: 36
                    implicitHeight: 30
                    Accessible.name: modelData.number
                    onClicked: root.chat.chooseDay(index)
                    contentItem: Label {
                        text: day.modelData.number
                        horizontalAlignment: Text.AlignHCenter
                        verticalAlignment: Text.AlignVCenter
                        font.weight: day.modelData.isToday ? Font.Bold : Font.Normal
                        color: day.modelData.isChosen ? Theme.accent : day.modelData.isInMonth ? Theme.text : Theme.tertiaryText
                    }
                    background: Rectangle {
                        color: day.modelData.isChosen ? Theme.selected : day.hovered ? Theme.hovered : "transparent"
                        border.color: Theme.accent
                        border.width: day.visualFocus ? 2 : 0
                    }
                }
            }
        }
        Button {
            Layout.fillWidth: true
            highlighted: true
            text: root.chat?.rangeLabel ?? ""
            enabled: root.chat?.hasRange ?? false
            onClicked: {
                root.close();
                root.chat.generateSummary();
            }
        }
    }
}
