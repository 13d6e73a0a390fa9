import QtQuick
import QuillornStyle

/// How a list is sorted and grouped, and whether it shows what is done.
Menu {
    id: root

    property QtObject tasks

    Menu {
        id: sorts

        title: root.tasks?.words.sortLabel ?? ""

        Instantiator {
            model: root.tasks?.sortOrders ?? []
            delegate: MenuItem {
                required property string modelData
                required property int index

                text: modelData
                checkable: true
                checked: root.tasks?.sortOrder === index
                onTriggered: root.tasks.sortOrder = index
            }
            onObjectAdded: (index, object) => sorts.insertItem(index, object)
            onObjectRemoved: (index, object) => sorts.removeItem(object)
        }
    }
    Menu {
        id: groups

        title: root.tasks?.words.groupLabel ?? ""

        Instantiator {
            model: root.tasks?.groupings ?? []
            delegate: MenuItem {
                required property string modelData
                required property int index

                text: modelData
                checkable: true
                checked: root.tasks?.grouping === index
                onTriggered: root.tasks.grouping = index
            }
            onObjectAdded: (index, object) => groups.insertItem(index, object)
            onObjectRemoved: (index, object) => groups.removeItem(object)
        }
    }
    MenuSeparator {}
    MenuItem {
        text: root.tasks?.words.showCompletedLabel ?? ""
        checkable: true
        checked: root.tasks?.showsCompleted ?? false
        onTriggered: root.tasks.showsCompleted = !root.tasks.showsCompleted
    }
}
