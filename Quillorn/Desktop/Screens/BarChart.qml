import QtQuick
import QtQuick.Layouts
import QuillornStyle

/// Columns over their labels. `bars` are {label, text, value}; the last one stands out.
RowLayout {
    id: root

    property var bars: []
    readonly property var nothing: ({
            "label": "",
            "text": "",
            "value": 0
        })
    readonly property real highest: bars.reduce((most, bar) => Math.max(most, bar.value), 0)

    spacing: 8
    Layout.preferredHeight: 170

    LayoutRepeater {
        model: root.bars.length

        ColumnLayout {
            id: column

            required property int index
            readonly property var part: root.bars[index] ?? nothing

            Layout.fillWidth: true
            Layout.fillHeight: true
            spacing: 6
            Accessible.role: Accessible.StaticText
            Accessible.name: part.label + " " + part.text

            Item {
                Layout.fillHeight: true
                Layout.fillWidth: true
                implicitWidth: 34

                Label {
                    anchors.horizontalCenter: parent.horizontalCenter
                    anchors.bottom: bar.top
                    anchors.bottomMargin: 4
                    text: column.part.text
                    font.pixelSize: Theme.small
                    color: Theme.secondaryText
                    visible: column.part.value > 0
                }
                Rectangle {
                    id: bar

                    anchors.horizontalCenter: parent.horizontalCenter
                    anchors.bottom: parent.bottom
                    width: Math.min(34, parent.width - 8)
                    height: root.highest > 0 ? Math.max(3, (parent.height - 20) * column.part.value / root.highest) : 3
                    radius: Math.min(4, height / 2)
                    color: column.index === root.bars.length - 1 ? Theme.fill : Theme.tint(Theme.fill, Theme.isDark ? 0.5 : 0.35)
                }
            }
            Label {
                Layout.alignment: Qt.AlignHCenter
                text: column.part.label
                font.pixelSize: Theme.small
                font.weight: column.index === root.bars.length - 1 ? Font.DemiBold : Font.Normal
                color: column.index === root.bars.length - 1 ? Theme.text : Theme.secondaryText
            }
        }
    }
}
