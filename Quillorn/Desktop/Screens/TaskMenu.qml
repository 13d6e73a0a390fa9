import QtQuick
import QtQuick.Controls
import QuillornStyle

/// What can be done with a task, or with all that are selected.
Menu {
    id: root

    property QtObject tasks
    property string task

    signal deleteWanted(string task)
    signal startWanted(string task)

    function openFor(newTask) {
        task = newTask;
        popup();
    }

    MenuItem {
        text: "Complete"
        icon.name: "checkmark.circle"
        onTriggered: root.tasks.toggleCompleted(root.task)
    }
    MenuItem {
        text: "Start Timer"
        icon.name: "play.fill"
        onTriggered: root.startWanted(root.task)
    }
    MenuSeparator {}
    Menu {
        id: statusMenu

        title: "Status"

        Instantiator {
            model: root.tasks?.statuses ?? []
            delegate: MenuItem {
                required property string modelData
                required property int index

                text: modelData
                onTriggered: root.tasks.setStatus(root.task, index)
            }
            onObjectAdded: (index, object) => statusMenu.insertItem(index, object)
            onObjectRemoved: (index, object) => statusMenu.removeItem(object)
        }
    }
    Menu {
        id: priorityMenu

        title: "Priority"

        Instantiator {
            model: root.tasks?.priorities ?? []
            delegate: MenuItem {
                required property string modelData
                required property int index

                text: modelData
                onTriggered: root.tasks.setPriority(root.task, index)
            }
            onObjectAdded: (index, object) => priorityMenu.insertItem(index, object)
            onObjectRemoved: (index, object) => priorityMenu.removeItem(object)
        }
    }
    Menu {
        title: "Due Date"

        MenuItem {
            text: "Today"
            onTriggered: root.tasks.setDueIn(root.task, 0)
        }
        MenuItem {
            text: "Tomorrow"
            onTriggered: root.tasks.setDueIn(root.task, 1)
        }
        MenuItem {
            text: "In a Week"
            onTriggered: root.tasks.setDueIn(root.task, 7)
        }
        MenuSeparator {}
        MenuItem {
            text: "None"
            onTriggered: root.tasks.setDueIn(root.task, null)
        }
    }
    MenuSeparator {}
    MenuItem {
        text: "Convert to Standalone"
        onTriggered: root.tasks.convertToStandalone(root.task)
    }
    MenuItem {
        text: "Duplicate"
        icon.name: "doc.on.doc"
        onTriggered: root.tasks.duplicate(root.task)
    }
    MenuSeparator {}
    MenuItem {
        text: "Delete…"
        icon.name: "trash"
        onTriggered: root.deleteWanted(root.task)
    }
}
