import QtQuick
import QuillornStyle

/// A symbol and a figure, small, in the second line of a row.
Row {
    property alias symbol: icon.name
    property alias text: label.text

    visible: text !== ""
    spacing: 4

    SymbolIcon {
        id: icon

        anchors.verticalCenter: parent.verticalCenter
        color: Theme.secondaryText
        size: 12
    }
    Label {
        id: label

        font.pixelSize: Theme.caption
        color: Theme.secondaryText
    }
}
