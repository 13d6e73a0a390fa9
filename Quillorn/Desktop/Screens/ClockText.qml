import QtQuick
import QuillornStyle

/// A running time in cells of one width, so that it doesn't dance.
Row {
    id: root

    property string text
    property color color: Theme.text
    property int pixelSize: Theme.body
    property int weight: Font.DemiBold

    LayoutMirroring.enabled: false // figures run from left to right everywhere
    LayoutMirroring.childrenInherit: true
    Accessible.role: Accessible.StaticText
    Accessible.name: text

    FontMetrics {
        id: metrics

        font.pixelSize: root.pixelSize
        font.weight: root.weight
    }
    LayoutRepeater {
        model: root.text.length

        Text {
            required property int index
            readonly property string letter: root.text.charAt(index)

            width: letter === ":" || letter === " " ? implicitWidth : Math.ceil(metrics.advanceWidth("0"))
            horizontalAlignment: Text.AlignHCenter
            text: letter
            textFormat: Text.PlainText
            font: metrics.font
            color: root.color
        }
    }
}
