import QtQuick
import QtQuick.Layouts
import QuillornStyle

/// Records under a heading; nothing where there are none.
ColumnLayout {
    id: root

    property string title
    property string symbol
    property color tone: Theme.text
    property alias rows: repeater.model

    signal opened(string record)

    visible: repeater.count > 0
    spacing: 2

    Label {
        Layout.topMargin: 8
        Layout.bottomMargin: 4
        text: root.title
        font.weight: Font.DemiBold
        color: Theme.secondaryText
        Accessible.role: Accessible.Heading
    }
    LayoutRepeater {
        id: repeater

        RecordRow {
            Layout.fillWidth: true
            symbol: root.symbol
            tone: root.tone
            onPicked: root.opened(recordId)
        }
    }
}
