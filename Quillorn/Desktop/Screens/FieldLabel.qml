import QtQuick
import QuillornStyle

/// The name of a field with its symbol.
Row {
    property alias symbol: icon.name
    property alias text: words.text

    spacing: 8

    SymbolIcon {
        id: icon

        anchors.verticalCenter: parent.verticalCenter
        color: Theme.secondaryText
        size: 14
    }
    Label {
        id: words

        anchors.verticalCenter: parent.verticalCenter
        color: Theme.secondaryText
    }
}
