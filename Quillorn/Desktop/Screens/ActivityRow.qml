import QtQuick
import QtQuick.Layouts
import QuillornStyle

/// Something that was done, or the head of its days.
ItemDelegate {
    id: root

    required property bool isHeading
    required property string title
    required property string subtitle
    required property string time
    required property string symbol
    required property string tone
    required property int kind
    required property string recordId

    signal picked

    enabled: !isHeading
    implicitHeight: Math.round((isHeading ? 34 : subtitle ? 46 : 34) * Theme.textScale)
    Accessible.name: [title, subtitle, time].filter(word => word).join(", ")
    onClicked: picked()
    contentItem: RowLayout {
        spacing: 10

        SymbolIcon {
            visible: !root.isHeading
            name: root.symbol
            color: Theme.shade(root.tone)
        }
        ColumnLayout {
            Layout.fillWidth: true
            spacing: 1

            Label {
                Layout.fillWidth: true
                enabled: true
                text: root.title
                font.weight: root.isHeading ? Font.DemiBold : Font.Normal
                font.pixelSize: root.isHeading ? Theme.caption : Theme.body
                color: root.isHeading ? Theme.secondaryText : Theme.text
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
