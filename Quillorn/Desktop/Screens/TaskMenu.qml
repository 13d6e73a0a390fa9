import QtQuick
import QuillornStyle

/// What can be done with a task, or with all that are selected.
Menu {
    id: root

    property QtObject tasks
    property string task

    signal deleteWanted(string task)
    signal startWanted(string task)

    readonly property var words: tasks?.menuWords ?? ({})
    /// What it offers for them.
    property var offer: ({})

    /// Under the item where a key has asked, else where the mouse is.
    function openFor(newTask, item) {
        task = newTask;
        offer = tasks.menu(newTask);
        item ? openUnder(item) : popup();
    }

    MenuItem {
        text: root.offer.completion ?? ""
        icon.name: "checkmark.circle"
        onTriggered: root.tasks.toggleCompleted(root.task)
    }
    MenuItem {
        text: root.words.startTimer ?? ""
        icon.name: "play.fill"
        onTriggered: root.startWanted(root.task)
    }
    MenuSeparator {}
    Menu {
        id: statusMenu

        title: root.words.status ?? ""

        Instantiator {
            model: root.tasks?.statuses ?? []
            delegate: MenuItem {
                required property string modelData
                required property int index

                text: modelData
                checked: root.offer.status === index
                onTriggered: root.tasks.setStatus(root.task, index)
            }
            onObjectAdded: (index, object) => statusMenu.insertItem(index, object)
            onObjectRemoved: (index, object) => statusMenu.removeItem(object)
        }
    }
    Menu {
        id: priorityMenu

        title: root.words.priority ?? ""

        Instantiator {
            model: root.tasks?.priorities ?? []
            delegate: MenuItem {
                required property string modelData
                required property int index

                text: modelData
                checked: root.offer.priority === index
                onTriggered: root.tasks.setPriority(root.task, index)
            }
            onObjectAdded: (index, object) => priorityMenu.insertItem(index, object)
            onObjectRemoved: (index, object) => priorityMenu.removeItem(object)
        }
    }
    Menu {
        id: dueMenu

        title: root.words.due ?? ""

        Instantiator {
            model: root.words.dueChoices ?? []
            delegate: MenuItem {
                required property var modelData

                text: modelData.label
                onTriggered: root.tasks.setDueIn(root.task, modelData.days)
            }
            onObjectAdded: (index, object) => dueMenu.insertItem(index, object)
            onObjectRemoved: (index, object) => dueMenu.removeItem(object)
        }
        MenuSeparator {}
        MenuItem {
            text: root.words.none ?? ""
            onTriggered: root.tasks.setDueIn(root.task, null)
        }
    }
    Menu {
        id: projectMenu

        title: root.words.project ?? ""
        height: Math.min(implicitHeight, 360)

        MenuItem {
            text: root.words.none ?? ""
            onTriggered: root.tasks.moveToProject(root.task, "")
        }
        Instantiator {
            model: root.offer.projects ?? []
            delegate: MenuItem {
                required property var modelData

                text: modelData.name
                onTriggered: root.tasks.moveToProject(root.task, modelData.id)
            }
            onObjectAdded: (index, object) => projectMenu.insertItem(index + 1, object)
            onObjectRemoved: (index, object) => projectMenu.removeItem(object)
        }
    }
    Menu {
        id: tagMenu

        title: root.words.tags ?? ""
        enabled: (root.offer.tags ?? []).length > 0
        height: Math.min(implicitHeight, 360)

        Instantiator {
            model: root.offer.tags ?? []
            delegate: MenuItem {
                required property var modelData

                text: modelData.name
                checkable: true
                checked: modelData.isOn
                onTriggered: root.tasks.setTag(root.task, modelData.id, !modelData.isOn)
            }
            onObjectAdded: (index, object) => tagMenu.insertItem(index, object)
            onObjectRemoved: (index, object) => tagMenu.removeItem(object)
        }
    }
    MenuSeparator {}
    MenuItem {
        text: root.words.convert ?? ""
        enabled: root.offer.canConvert ?? false
        onTriggered: root.tasks.convertToStandalone(root.task)
    }
    MenuItem {
        text: root.words.duplicate ?? ""
        icon.name: "doc.on.doc"
        onTriggered: root.tasks.duplicate(root.task)
    }
    MenuSeparator {}
    MenuItem {
        text: root.words.remove ?? ""
        icon.name: "trash"
        onTriggered: root.deleteWanted(root.task)
    }
}
