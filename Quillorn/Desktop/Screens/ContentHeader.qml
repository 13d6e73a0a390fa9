import QtQuick
import QtQuick.Layouts
import QuillornStyle

/// The title of the middle column, the timer, search and the options of the list.
Item {
    id: root

    property string title
    property string subtitle
    property string tone
    property QtObject tasks
    property QtObject timer

    signal menuWanted(Item button)
    /// The keyboard goes on to what was found.
    signal searchLeft

    function focusSearch() {
        search.forceActiveFocus(Qt.ShortcutFocusReason);
        search.selectAll();
    }

    function openMenu() {
        menuWanted(menu);
    }

    implicitHeight: 52

    RowLayout {
        anchors.fill: parent
        anchors.leftMargin: 18
        anchors.rightMargin: 10
        spacing: 8

        Rectangle {
            visible: root.tone !== ""
            implicitWidth: 10
            implicitHeight: 10
            radius: 5
            color: Theme.shade(root.tone)
        }
        ColumnLayout {
            Layout.fillWidth: true
            Layout.minimumWidth: 60
            spacing: 0

            Label {
                Layout.fillWidth: true
                text: root.title
                font.pixelSize: Theme.heading + 1
                font.weight: Font.DemiBold
                elide: Text.ElideRight
                Accessible.role: Accessible.Heading
            }
            Label {
                Layout.fillWidth: true
                visible: text !== ""
                text: root.subtitle
                font.pixelSize: Theme.small
                color: Theme.secondaryText
                elide: Text.ElideRight
            }
        }
        Late {
            wanted: root.timer?.isRunning ?? false
            visible: wanted
            source: "TimerPill.qml"
            onLoaded: {
                item.timer = Qt.binding(() => root.timer);
                item.isNarrow = Qt.binding(() => root.width < 640);
                item.opened.connect(task => Desk.selectTask(task));
            }
        }
        TextField {
            id: search

            Layout.fillWidth: true
            Layout.preferredWidth: 150
            Layout.minimumWidth: 80
            Layout.maximumWidth: 150
            visible: root.tasks !== null
            symbol: "magnifyingglass"
            placeholderText: root.tasks?.searchPrompt ?? ""
            text: root.tasks?.searchText ?? ""
            onTextEdited: root.tasks.searchText = text
            onAccepted: root.searchLeft()
            Keys.onDownPressed: root.searchLeft()
            Keys.onEscapePressed: text ? root.tasks.searchText = "" : root.searchLeft()
        }
        ToolButton {
            id: view

            visible: root.tasks !== null
            tip: "View Options"
            icon.name: "line.3.horizontal.decrease.circle"
            onClicked: options.made().openUnder(view)

            LatePopup {
                id: options

                source: "ViewOptionsMenu.qml"
                onLoaded: item.tasks = Qt.binding(() => root.tasks)
            }
        }
        ToolButton {
            tip: "New Task (Ctrl+N)"
            icon.name: "plus"
            onClicked: Desk.command("newTask")
        }
        ToolButton {
            id: menu

            tip: "Menu"
            icon.name: "line.3.horizontal"
            onClicked: root.menuWanted(menu)
        }
    }
}
