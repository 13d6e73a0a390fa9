import QtQuick
import QtQuick.Layouts
import QuillornStyle

/// One status with its tasks. Cards go to the next column by dragging, and by Alt and an arrow key.
Rectangle {
    id: root

    property QtObject column
    property string current
    property Item carrier

    signal opened(string task)
    signal cardMoved(string task, int by)
    signal cardDropped(string task)
    signal cardAdded(string title)

    /// The keyboard goes to that card.
    function focusCard(task) {
        list.currentIndex = column.place(task);
        list.forceActiveFocus(Qt.TabFocusReason);
    }

    radius: Theme.cardRadius
    color: target.containsDrag ? Theme.selected : Theme.card
    implicitWidth: 160

    DropArea {
        id: target

        anchors.fill: parent
        keys: ["task"]
        onDropped: drop => root.cardDropped(drop.source.task)
    }
    ColumnLayout {
        anchors.fill: parent
        anchors.margins: 8
        spacing: 8

        RowLayout {
            Layout.fillWidth: true
            Layout.leftMargin: 4

            SymbolIcon {
                name: root.column.symbol
                color: Theme.secondaryText
            }
            Label {
                Layout.fillWidth: true
                Layout.minimumWidth: 0
                Layout.maximumWidth: implicitWidth
                text: root.column.label
                font.weight: Font.DemiBold
                elide: Text.ElideRight
                Accessible.role: Accessible.Heading
            }
            Label {
                Layout.fillWidth: true
                text: root.column.count
                color: Theme.secondaryText
            }
            ToolButton {
                tip: Desk.titles.newTask
                Accessible.name: tip + ", " + root.column.label
                icon.name: "plus"
                onClicked: {
                    typed.visible = true;
                    typed.forceActiveFocus();
                }
            }
        }
        TextField {
            id: typed

            Layout.fillWidth: true
            visible: false
            placeholderText: "Title"
            onAccepted: {
                if (text.trim())
                    root.cardAdded(text);
                clear();
            }
            onActiveFocusChanged: if (!activeFocus)
                visible = false
            Keys.onEscapePressed: visible = false
        }
        RowList {
            id: list

            Layout.fillWidth: true
            Layout.fillHeight: true
            spacing: 8
            model: root.column.cards
            Accessible.name: root.column.label
            delegate: BoardCard {
                width: list.width
                isShown: taskId === root.current
                isFocused: list.activeFocus && ListView.isCurrentItem
                onPicked: {
                    list.currentIndex = index;
                    list.forceActiveFocus();
                    root.opened(taskId);
                }
                carrier: root.carrier
            }
            onRowPressed: (event, row) => {
                event.accepted = true;
                if (event.modifiers & Qt.AltModifier && event.key === Qt.Key_Right)
                    root.cardMoved(row.taskId, 1);
                else if (event.modifiers & Qt.AltModifier && event.key === Qt.Key_Left)
                    root.cardMoved(row.taskId, -1);
                else if (event.key === Qt.Key_Return || event.key === Qt.Key_Enter)
                    row.picked();
                else
                    event.accepted = false;
            }
        }
    }
}
