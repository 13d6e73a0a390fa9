import QtQuick
import QuillornStyle

/// A command of the menu; a line may stand above it.
MenuItem {
    id: root

    property bool beginsPart: false

    keys: ""
    topInset: beginsPart ? 9 : 0
    topPadding: topInset
    implicitHeight: 28 + topInset
    Accessible.description: keys

    Rectangle {
        visible: root.beginsPart
        x: 4
        y: 4
        width: root.width - 8
        height: 1
        color: Theme.line
    }
}
