import QtQuick
import QtQuick.Layouts
import QtQuick.Controls
import QuillornStyle

/// Smart lists, clients with their projects, tags and the archive; at the foot the state of the server.
Rectangle {
    id: root

    property QtObject sidebar
    property string selected
    property string footer
    property bool isServing: false

    signal picked(int row)
    signal settingsWanted
    signal tasksDropped(string task, int row)

    function focusList() {
        list.forceActiveFocus(Qt.TabFocusReason);
    }

    color: Theme.sidebar

    RowList {
        id: list

        /// The row over which another one is dragged, and where that would go.
        property int target: -1
        property int place: 0

        anchors.fill: parent
        anchors.bottomMargin: foot.height
        topMargin: 10
        bottomMargin: 10
        leftMargin: 8
        rightMargin: 8
        model: root.sidebar?.rows ?? null
        Accessible.role: Accessible.Tree
        Accessible.name: "Sidebar"

        delegate: SidebarRow {
            width: list.width - 16
            isSelected: key !== "" && key === root.selected
            isFocused: list.activeFocus && ListView.isCurrentItem
            sidebar: root.sidebar
            onIsSelectedChanged: if (isSelected)
                list.currentIndex = index
            onPicked: {
                list.currentIndex = index;
                if (key !== "")
                    root.picked(index);
                else
                    root.sidebar.act(index);
            }
            onMenuWanted: menu.openFor(index)
            dropPlace: index === list.target ? list.place : 0
            onDragged: position => {
                list.target = list.indexAt(20, mapToItem(list.contentItem, 0, position).y);
                list.place = root.sidebar.dropPlace(index, list.target);
            }
            onDropped: {
                const target = list.target;
                list.target = -1;
                root.sidebar.drop(index, target);
            }
            onTasksDropped: task => root.tasksDropped(task, index)
        }
        onMenuWanted: row => menu.openFor(row.index, row)
        onRowPressed: (event, row) => {
            event.accepted = true;
            if (row.isRenaming)
                event.accepted = false;
            else if (event.key === Qt.Key_Return || event.key === Qt.Key_Enter || event.key === Qt.Key_Space)
                row.picked();
            else if ((event.key === Qt.Key_Right && row.disclosure === 1) || (event.key === Qt.Key_Left && row.disclosure === 2))
                root.sidebar.toggle(currentIndex);
            else if (event.key === Qt.Key_F2)
                event.accepted = root.sidebar.rename(currentIndex);
            else if (event.modifiers & Qt.AltModifier && (event.key === Qt.Key_Up || event.key === Qt.Key_Down))
                root.sidebar.move(currentIndex, event.key === Qt.Key_Up ? -1 : 1);
            else
                event.accepted = false;
        }
    }
    Menu {
        id: menu

        property int row: -1
        property var entries: []

        /// Under the item where a key has asked, else where the mouse is.
        function openFor(index, item) {
            row = index;
            entries = root.sidebar.menu(index);
            if (entries.length > 0)
                item ? openUnder(item) : popup();
        }

        Instantiator {
            model: menu.entries
            delegate: MenuItem {
                required property var modelData

                text: modelData.title
                icon.name: modelData.symbol
                onTriggered: root.sidebar.perform(menu.row, modelData.index)
            }
            onObjectAdded: (index, object) => menu.insertItem(index, object)
            onObjectRemoved: (index, object) => menu.removeItem(object)
        }
    }
    Rectangle {
        id: foot

        anchors.bottom: parent.bottom
        width: parent.width
        height: 44
        color: "transparent"

        Rectangle {
            width: parent.width
            height: 1
            color: Theme.line
        }
        RowLayout {
            anchors.fill: parent
            anchors.leftMargin: 16
            anchors.rightMargin: 8
            spacing: 8

            Rectangle {
                implicitWidth: 8
                implicitHeight: 8
                radius: 4
                color: root.isServing ? Theme.green : Theme.edge
            }
            Label {
                Layout.fillWidth: true
                text: root.footer
                font.pixelSize: Theme.caption
                color: Theme.secondaryText
                elide: Text.ElideRight
            }
            ToolButton {
                tip: "Settings"
                icon.name: "gear"
                tone: Theme.secondaryText
                onClicked: root.settingsWanted()
            }
        }
    }
}
