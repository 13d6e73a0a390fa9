import QtQuick
import QtQuick.Layouts
import QuillornStyle

/// A month on which the first and the last day of a report are chosen.
Popup {
    id: root

    property QtObject chat
    readonly property var days: chat?.rangeDays ?? []

    focus: true
    onOpened: {
        grid.currentIndex = Math.max(0, days.findIndex(day => day.isToday));
        grid.forceActiveFocus(Qt.PopupFocusReason);
    }
    contentItem: ColumnLayout {
        spacing: 8

        RowLayout {
            Layout.fillWidth: true

            ToolButton {
                tip: root.chat?.words.previousMonth ?? ""
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
                tip: root.chat?.words.nextMonth ?? ""
                icon.name: "chevron.right"
                onClicked: root.chat.moveRange(1)
            }
        }
        // One stop of the Tab key, as a list is.
        GridView {
            id: grid

            implicitWidth: 7 * cellWidth
            implicitHeight: Math.ceil(count / 7) * cellHeight
            cellWidth: Math.round(36 * Theme.textScale)
            cellHeight: Math.round(32 * Theme.textScale)
            interactive: false
            activeFocusOnTab: true
            keyNavigationEnabled: true
            highlightMoveDuration: 0
            model: root.days.length
            Accessible.role: Accessible.List
            Accessible.name: root.chat?.words.daysLabel ?? ""
            Keys.onPressed: event => {
                event.accepted = true;
                if (event.key === Qt.Key_Home)
                    currentIndex = 0;
                else if (event.key === Qt.Key_End)
                    currentIndex = count - 1;
                else if (event.key === Qt.Key_PageUp || event.key === Qt.Key_PageDown)
                    root.chat.moveRange(event.key === Qt.Key_PageUp ? -1 : 1);
                else
                    event.accepted = false;
            }
            delegate: AbstractChip {
                id: cell

                required property int index
                readonly property var day: root.days[index] ?? ({})
                readonly property bool isFocused: grid.activeFocus && GridView.isCurrentItem

                width: grid.cellWidth
                height: grid.cellHeight - 2
                focusPolicy: Qt.NoFocus
                Accessible.focusable: true
                Accessible.name: day.name ?? ""
                Accessible.checkable: true
                Accessible.checked: day.isChosen ?? false
                onClicked: {
                    grid.currentIndex = index;
                    root.chat.chooseDay(index);
                }
                contentItem: Label {
                    text: cell.day.number ?? ""
                    horizontalAlignment: Text.AlignHCenter
                    verticalAlignment: Text.AlignVCenter
                    font.weight: cell.day.isToday ? Font.Bold : Font.Normal
                    color: cell.day.isChosen ? Theme.accent : cell.day.isInMonth ? Theme.text : Theme.tertiaryText
                }
                background: Rectangle {
                    color: cell.day.isChosen ? Theme.selected : cell.hovered ? Theme.hovered : "transparent"
                    border.color: Theme.accent
                    border.width: cell.isFocused ? 2 : cell.day.isChosen ? Theme.outline : 0
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
