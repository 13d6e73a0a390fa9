import QtQuick
import QuillornStyle

/// All commands with their keys.
Menu {
    id: root

    Instantiator {
        model: Desk.menu
        delegate: CommandItem {
            required property var modelData
            readonly property bool isUndo: modelData.name === "undo"
            readonly property bool isRedo: modelData.name === "redo"

            text: isUndo ? Desk.undoTitle : isRedo ? Desk.redoTitle : modelData.title
            keys: modelData.keys
            beginsPart: modelData.beginsPart
            enabled: isUndo ? Desk.canUndo : isRedo ? Desk.canRedo : true
            onTriggered: Desk.command(modelData.name)
        }
        onObjectAdded: (index, object) => root.insertItem(index, object)
        onObjectRemoved: (index, object) => root.removeItem(object)
    }
}
