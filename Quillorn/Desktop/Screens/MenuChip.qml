import QtQuick
import QuillornStyle

/// A chip with a menu: of words by their place, or of records by their ids.
Chip {
    id: root

    property var choices: []
    property var records: []

    signal chosen(int index)
    signal recordChosen(string record)
    signal openedMenu

    onClicked: {
        openedMenu();
        menu.popup(0, height + 4);
    }

    Menu {
        id: menu

        height: Math.min(implicitHeight, 360)

        Instantiator {
            model: root.choices.length > 0 ? root.choices : root.records
            delegate: MenuItem {
                required property var modelData
                required property int index

                text: modelData.name ?? modelData
                onTriggered: modelData.name === undefined ? root.chosen(index) : root.recordChosen(modelData.id)
            }
            onObjectAdded: (index, object) => menu.insertItem(index, object)
            onObjectRemoved: (index, object) => menu.removeItem(object)
        }
    }
}
