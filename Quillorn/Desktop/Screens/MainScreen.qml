import QtQuick
import QtQuick.Layouts
import QuillornStyle

/// The three columns.
SplitView {
    id: root

    property var confirm
    property Item carrier
    readonly property bool isRecord: Desk.column === "client" || Desk.column === "project"
    readonly property Item shownList: [today, upcoming, allTasks, tagged].find(pane => pane.wanted) ?? null
    readonly property bool hasDetail: Desk.task !== null || Desk.note !== null
    /// What had the keyboard is gone with its screen.
    readonly property bool isFocusLost: !(Window.activeFocusItem?.visible ?? true)

    signal settingsWanted
    signal menuWanted(Item button)

    function focusSearch() {
        header.focusSearch();
    }
    function openMenu() {
        header.openMenu();
    }
    /// From the sidebar to the list, the detail, and back.
    function nextColumn() {
        if (hasFocus(sidebar) && content.visible)
            focusContent();
        else if (!hasFocus(detail) && detail.visible && hasDetail)
            focusDetail();
        else if (sidebar.visible)
            sidebar.focusList();
        else
            focusContent();
    }
    function hasFocus(column) {
        for (let item = root.Window.activeFocusItem; item; item = item.parent)
            if (item === column)
                return true;
        return false;
    }
    function focusContent() {
        if (shownList)
            shownList.item.focusList();
        else if (recordPane.showsTasks)
            recordPane.item.focusList();
        else
            content.nextItemInFocusChain().forceActiveFocus(Qt.TabFocusReason);
    }
    function focusDetail() {
        detail.nextItemInFocusChain().forceActiveFocus(Qt.TabFocusReason);
    }
    /// Closes the detail; false where there is none.
    function back() {
        if (!hasDetail)
            return false;
        Desk.task !== null ? Desk.selectTask("") : Desk.selectNote("");
        focusContent();
        return true;
    }
    function toggleSidebar() {
        sidebar.visible = !sidebar.visible;
    }

    /// A split view doesn't mirror by itself.
    function arrange() {
        if (count === 3 && (itemAt(0) === sidebar) === mirrored) {
            moveItem(0, 2);
            moveItem(0, 1);
        }
    }
    function findFocus() {
        if (isFocusLost)
            focusContent();
    }

    orientation: Qt.Horizontal
    onIsFocusLostChanged: Qt.callLater(findFocus)
    onMirroredChanged: arrange()
    Component.onCompleted: arrange()

    Sidebar {
        id: sidebar

        SplitView.preferredWidth: 232
        SplitView.minimumWidth: 180
        SplitView.maximumWidth: 360
        sidebar: Desk.sidebar
        selected: Desk.selection
        footer: Desk.serverState
        isServing: Desk.isServing
        onPicked: row => Desk.selectRow(row)
        onSettingsWanted: root.settingsWanted()
        onTasksDropped: (task, row) => Desk.dropTasks(task, row)
    }
    ColumnLayout {
        id: content

        SplitView.fillWidth: true
        SplitView.minimumWidth: 340
        visible: !root.hasDetail || root.width > 860
        spacing: 0

        ContentHeader {
            id: header

            Layout.fillWidth: true
            title: Desk.title
            subtitle: Desk.record?.subtitle ?? ""
            tone: Desk.record?.tone ?? ""
            tasks: Desk.column === "taskList" || recordPane.showsTasks ? Desk.tasks : null
            timer: Desk.timer
            onMenuWanted: button => root.menuWanted(button)
            onSearchLeft: root.focusContent()
        }
        Rectangle {
            Layout.fillWidth: true
            implicitHeight: 1
            color: Theme.line
        }
        LatePane {
            id: recordPane

            readonly property bool showsTasks: item?.showsTasks ?? false

            offered: Desk.record
            source: "RecordPane.qml"
            onLoaded: {
                item.confirm = root.confirm;
                item.carrier = root.carrier;
                item.entered.connect(() => Qt.callLater(root.focusDetail));
            }
        }
        TasksPane {
            id: today

            list: "today"
            confirm: root.confirm
            carrier: root.carrier
            onEntered: Qt.callLater(root.focusDetail)
        }
        TasksPane {
            id: upcoming

            list: "upcoming"
            confirm: root.confirm
            carrier: root.carrier
            onEntered: Qt.callLater(root.focusDetail)
        }
        TasksPane {
            id: allTasks

            list: "allTasks"
            confirm: root.confirm
            carrier: root.carrier
            onEntered: Qt.callLater(root.focusDetail)
        }
        TasksPane {
            id: tagged

            confirm: root.confirm
            carrier: root.carrier
            onEntered: Qt.callLater(root.focusDetail)
        }
        LateDocument {
            Layout.fillWidth: true
            Layout.fillHeight: true
            visible: wanted
            wanted: ["allNotes", "dailySummary", "activityLog"].includes(Desk.column)
            source: "RecordColumns.qml"
            onLoaded: item.confirm = root.confirm
        }
        Item {
            Layout.fillWidth: true
            Layout.fillHeight: true
            visible: Desk.column === "nothing"

            EmptyState {
                anchors.centerIn: parent
                width: Math.min(parent.width - 48, 400)
                symbol: "sidebar.left"
                title: Desk.columnEmpty.title ?? ""
                text: Desk.columnEmpty.text ?? ""
            }
        }
    }
    Rectangle {
        id: detail

        SplitView.preferredWidth: root.width > 860 ? 420 : root.width
        SplitView.minimumWidth: 320
        visible: root.hasDetail || (!root.isRecord && !["activityLog", "dailySummary"].includes(Desk.column) && root.width > 860)
        color: Theme.panel

        LateDocument {
            anchors.fill: parent
            wanted: root.hasDetail
            source: "DetailColumn.qml"
            onLoaded: item.confirm = root.confirm
        }
        EmptyState {
            anchors.centerIn: parent
            width: Math.min(parent.width - 48, 360)
            visible: !root.hasDetail
            symbol: Desk.detailEmpty.symbol ?? ""
            title: Desk.detailEmpty.title ?? ""
            text: Desk.detailEmpty.text ?? ""
        }
    }
}
