import QtQuick
import QuillornStyle

/// A badge that is a button.
AbstractChip {
    id: root

    property string symbol
    property color tone: Theme.accent

    implicitWidth: implicitContentWidth
    implicitHeight: implicitContentHeight
    Accessible.name: text
    contentItem: Badge {
        text: root.text
        symbol: root.symbol
        tone: root.tone
        border.width: root.visualFocus ? 2 : 0
        Accessible.ignored: true
    }
}
