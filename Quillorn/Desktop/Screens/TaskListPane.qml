import QtQuick
import QtQuick.Layouts

/// A list of tasks under its cards, with the bar of meetings.
Item {
    id: root

    property QtObject tasks
    property var confirm
    property Item carrier
    /// The task that the detail shows.
    property string current

    signal opened(string task)
    signal newTask
    /// The keyboard goes on in the detail.
    signal entered
    signal startTimer(string task)

    // A pane that is kept and seen again draws what its list has selected by then.
    onVisibleChanged: if (visible)
        selection = tasks?.selection() ?? []

    function focusList() {
        list.forceActiveFocus(Qt.TabFocusReason);
    }

    ColumnLayout {
        anchors.fill: parent
        spacing: 0

        Late {
            Layout.fillWidth: true
            wanted: root.tasks?.hasMeetings ?? false
            visible: wanted
            source: "MeetingBar.qml"
            onLoaded: item.tasks = Qt.binding(() => root.tasks)
        }
        HeadedList {
            id: list

            Layout.fillWidth: true
            Layout.fillHeight: true
            reuseItems: true
            bottomMargin: 16
            leftMargin: 8
            rightMargin: 8
            model: root.tasks?.rows ?? null
            Accessible.name: root.tasks?.words.title ?? ""

            header: SmartListHeader {
                width: list.width - 16
                dashboard: root.tasks?.dashboard ?? ({})
            }
            delegate: TaskRow {
                width: list.width - 16
                isCurrent: ListView.isCurrentItem
                isShown: taskId === root.current || (root.selection.length > 1 && root.selection.includes(taskId))
                isFocused: list.activeFocus && ListView.isCurrentItem
                carrier: root.carrier
                onCarried: (row, place) => root.carrier.carry(row, place, taskId, root.tasks.carried(taskId, title))
                onPicked: modifiers => {
                    list.currentIndex = index;
                    list.forceActiveFocus();
                    root.pick(taskId, modifiers);
                }
                onToggled: root.tasks.toggleCompleted(taskId)
                onDisclosed: kind === 1 ? root.tasks.toggleDoneSection() : root.tasks.toggleDisclosure(taskId)
                onMenuWanted: menu.made().openFor(taskId)
            }

            onMenuWanted: row => {
                if (row.isTask)
                    menu.made().openFor(row.taskId, row);
            }
            onRowPressed: (event, row) => {
                event.accepted = true;
                if (row.kind === 1 && (event.key === Qt.Key_Space || event.key === Qt.Key_Return))
                    root.tasks.toggleDoneSection();
                else if (!row.isTask)
                    event.accepted = false;
                else if (event.key === Qt.Key_Space && event.modifiers & Qt.ControlModifier)
                    root.pick(row.taskId, event.modifiers);
                else if (event.key === Qt.Key_Space)
                    root.tasks.toggleCompleted(row.taskId);
                else if (event.key === Qt.Key_Return || event.key === Qt.Key_Enter)
                    root.enter(row.taskId);
                else if (event.key === Qt.Key_Delete)
                    root.askToDelete(row.taskId);
                else if ((event.key === Qt.Key_Right && row.disclosure === 1) || (event.key === Qt.Key_Left && row.disclosure === 2))
                    root.tasks.toggleDisclosure(row.taskId);
                else
                    event.accepted = false;
            }

            EmptyState {
                readonly property var state_: root.tasks?.emptyState ?? ({})

                anchors.centerIn: parent
                anchors.verticalCenterOffset: 40
                width: Math.min(parent.width - 48, 400)
                visible: title !== ""
                symbol: state_.symbol || "checkmark.circle"
                title: state_.title ?? ""
                text: state_.text ?? ""
                action: state_.action ?? ""
                onActed: state_.command ? root.newTask() : root.tasks.clearFilters()
            }
        }
    }

    /// Control adds to what is selected or takes from it.
    function pick(task, modifiers) {
        if (modifiers & Qt.ControlModifier) {
            const chosen = tasks.selection();
            tasks.select(chosen.includes(task) ? chosen.filter(id => id !== task) : chosen.concat(task));
        } else {
            tasks.select([task]);
        }
        selection = tasks.selection();
        opened(task);
    }
    function enter(task) {
        pick(task, 0);
        entered();
    }
    property var selection: []

    function askToDelete(task) {
        const question = tasks.deletion(task);
        if (question.title)
            confirm.ask(question, () => tasks.remove(task));
    }

    Late {
        id: menu

        source: "TaskMenu.qml"
        onLoaded: {
            item.tasks = Qt.binding(() => root.tasks);
            item.deleteWanted.connect(root.askToDelete);
            item.startWanted.connect(root.startTimer);
        }
    }
}
