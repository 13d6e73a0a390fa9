import QtQuick
import QtQuick.Layouts
import QuillornStyle

/// A record with a second line and a time, which leads to it.
ItemDelegate {
    id: root

    required property string recordId
    required property string title
    required property string subtitle
    required property string time
    property string symbol
    property color tone: Theme.text

    signal picked

    implicitHeight: Math.round((subtitle ? 46 : 34) * Theme.textScale)
    Accessible.name: [title, subtitle, time].filter(word => word).join(", ")
    onClicked: picked()
    contentItem: RowLayout {
        spacing: 10

        SymbolIcon {
            name: root.symbol
            color: root.tone
        }
        ColumnLayout {
            Layout.fillWidth: true
            spacing: 1

            Label {
                Layout.fillWidth: true
                text: root.title
                elide: Text.ElideRight
            }
            Label {
                Layout.fillWidth: true
                visible: text !== ""
                text: root.subtitle
                font.pixelSize: Theme.caption
                color: Theme.secondaryText
                elide: Text.ElideRight
            }
        }
        Label {
            text: root.time
            font.pixelSize: Theme.caption
            color: Theme.secondaryText
        }
    }
}
