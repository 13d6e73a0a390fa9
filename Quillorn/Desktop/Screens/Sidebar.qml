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

    function focusList() {
        list.forceActiveFocus(Qt.TabFocusReason);
    }

    color: Theme.sidebar

    ListView {
        id: list

        anchors.fill: parent
        anchors.bottomMargin: foot.height
        topMargin: 10
        bottomMargin: 10
        leftMargin: 8
        rightMargin: 8
        clip: true
        activeFocusOnTab: true
        keyNavigationEnabled: true
        currentIndex: -1
        model: root.sidebar?.rows ?? null
        Accessible.role: Accessible.Tree
        Accessible.name: "Sidebar"
        ScrollBar.vertical: ScrollBar {}

        delegate: SidebarRow {
            width: list.width - 16
            isSelected: key !== "" && key === root.selected
            isFocused: list.activeFocus && ListView.isCurrentItem
            sidebar: root.sidebar
            onPicked: {
                list.currentIndex = index;
                if (key !== "")
                    root.picked(index);
                else
                    root.sidebar.act(index);
            }
            onMenuWanted: menu.openFor(index)
            onDropped: position => root.sidebar.drop(index, list.indexAt(20, mapToItem(list.contentItem, 0, position).y))
        }
        Keys.onPressed: event => {
            const row = currentItem;
            if (!row)
                return;
            event.accepted = true;
            if (event.key === Qt.Key_Return || event.key === Qt.Key_Enter || event.key === Qt.Key_Space)
                row.picked();
            else if ((event.key === Qt.Key_Right && row.disclosure === 1) || (event.key === Qt.Key_Left && row.disclosure === 2))
                root.sidebar.toggle(currentIndex);
            else if (event.key === Qt.Key_Menu || event.key === Qt.Key_F2)
                menu.openFor(currentIndex);
            else
                event.accepted = false;
        }
    }
    Menu {
        id: menu

        property int row: -1
        property var entries: []

        function openFor(index) {
            row = index;
            entries = root.sidebar.menu(index);
            if (entries.length > 0)
                popup();
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
