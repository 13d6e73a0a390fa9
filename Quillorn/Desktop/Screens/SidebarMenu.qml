import QtQuick
import QuillornStyle

/// What can be done with a row of the sidebar.
Menu {
    id: root

    property QtObject sidebar
    property int row: -1
    property var entries: []

    /// Under the item where a key has asked, else where the mouse is.
    function openFor(index, item) {
        row = index;
        entries = sidebar.menu(index);
        if (entries.length > 0)
            item ? openUnder(item) : popup();
    }

    Instantiator {
        model: root.entries
        delegate: MenuItem {
            required property var modelData

            text: modelData.title
            icon.name: modelData.symbol
            onTriggered: root.sidebar.perform(root.row, modelData.index)
        }
        onObjectAdded: (index, object) => root.insertItem(index, object)
        onObjectRemoved: (index, object) => root.removeItem(object)
    }
}
