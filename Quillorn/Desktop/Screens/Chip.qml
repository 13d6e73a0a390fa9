import QtQuick
import QuillornStyle

/// A word on a ground of its own colour; one with a menu is a button.
AbstractChip {
    id: root

    property string symbol
    property color tone: Theme.accent

    implicitWidth: row.implicitWidth + 16
    implicitHeight: Math.round(22 * Theme.textScale)
    Accessible.name: text

    contentItem: Item {
        Row {
            id: row

            anchors.centerIn: parent
            spacing: 5

            SymbolIcon {
                anchors.verticalCenter: parent.verticalCenter
                visible: root.symbol !== ""
                name: root.symbol
                color: root.tone
                size: 13
            }
            Label {
                anchors.verticalCenter: parent.verticalCenter
                text: root.text
                font.pixelSize: Theme.caption
                font.weight: Font.Medium
                color: root.tone
            }
        }
    }
    background: Rectangle {
        radius: height / 2
        color: Theme.tint(root.tone)
        border.width: root.visualFocus ? 2 : 0
        border.color: Theme.accent
    }
}
