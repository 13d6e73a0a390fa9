import QtQuick
import QuillornStyle

/// A word on a ground of its own colour.
Rectangle {
    id: root

    property string text
    property string symbol
    property color tone: Theme.accent

    implicitWidth: row.implicitWidth + 16
    implicitHeight: Math.round(22 * Theme.textScale)
    radius: height / 2
    color: Theme.tint(tone)
    border.color: Theme.accent
    border.width: 0
    Accessible.role: Accessible.StaticText
    Accessible.name: text

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
            Accessible.ignored: true
        }
    }
}
