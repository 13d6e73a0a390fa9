import QtQuick
import QtQuick.Layouts
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

        /// The row over which another one is dragged, or a task, and where that would go: 1 into it, 2 above, 3 below.
        property int target: -1
        property int place: 0

        anchors.fill: parent
        anchors.bottomMargin: foot.height
        topMargin: 10
        bottomMargin: 10
        leftMargin: 8
        rightMargin: 8
        model: root.sidebar?.rows ?? null
        // Without a height it would scroll for what is selected, past the first heading.
        highlightFollowsCurrentItem: height > 0
        onHighlightFollowsCurrentItemChanged: positionViewAtIndex(currentIndex, ListView.Contain)
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
            onMenuWanted: menu.made().openFor(index)
            isTarget: index === list.target && list.place === 1
            onDragged: position => {
                list.target = list.indexAt(20, mapToItem(list.contentItem, 0, position).y);
                list.place = root.sidebar.dropPlace(index, list.target);
            }
            onDropped: {
                const target = list.target;
                list.target = -1;
                root.sidebar.drop(index, target);
            }
        }
        onMenuWanted: row => menu.made().openFor(row.index, row)
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
    Rectangle {
        readonly property Item row: list.place > 1 ? list.itemAtIndex(list.target) : null

        parent: list.contentItem
        z: 1
        visible: row !== null
        width: row?.width ?? 0
        height: 2
        y: row ? (list.place === 2 ? row.y - 1 : row.y + row.height - 1) : 0
        color: Theme.accent
    }
    DropArea {
        anchors.fill: list
        keys: ["task"]
        onPositionChanged: drag => {
            const over = list.itemAt(20, drag.y + list.contentY);
            list.target = over?.takesTasks ? over.index : -1;
            list.place = 1;
        }
        onExited: list.target = -1
        onDropped: drop => {
            if (list.target >= 0)
                root.tasksDropped(drop.source.task, list.target);
            list.target = -1;
        }
    }
    Late {
        id: menu

        source: "SidebarMenu.qml"
        onLoaded: item.sidebar = Qt.binding(() => root.sidebar)
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
