import QtQuick
import QtQuick.Layouts
import QuillornStyle

/// Shares of the time, the longest first, with a way to see all of them.
Card {
    id: root

    property var rows: []
    property string emptyText
    property int shown: 5

    Repeater {
        model: root.rows.slice(0, root.shown)

        ShareBar {
            required property var modelData

            Layout.fillWidth: true
            name: modelData.name
            figure: modelData.figure
            share: modelData.part
            tone: modelData.tone ? Theme.shade(modelData.tone) : Theme.fill
            hasDot: modelData.tone !== ""
        }
    }
    Label {
        visible: root.rows.length === 0
        text: root.emptyText
        color: Theme.secondaryText
    }
    Button {
        visible: root.rows.length > root.shown
        flat: true
        text: "Show All"
        tone: Theme.accent
        onClicked: root.shown = root.rows.length
    }
    Item {
        Layout.fillHeight: true
    }
}
