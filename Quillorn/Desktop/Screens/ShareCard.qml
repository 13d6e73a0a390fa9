import QtQuick
import QtQuick.Layouts
import QuillornStyle

/// Shares of the time, the longest first, with a way to see all of them.
Card {
    id: root

    property var rows: []
    property string emptyText
    /// Of the button that shows what is hidden.
    property string showAll
    property int shown: 5

    LayoutRepeater {
        model: Math.min(root.rows.length, root.shown)

        ShareBar {
            required property int index
            readonly property var row: root.rows[index] ?? ({})

            Layout.fillWidth: true
            name: row.name ?? ""
            figure: row.figure ?? ""
            share: row.part ?? 0
            tone: row.tone ? Theme.shade(row.tone) : Theme.fill
            hasDot: row.tone !== ""
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
        text: root.showAll
        tone: Theme.accent
        onClicked: root.shown = root.rows.length
    }
    Item {
        Layout.fillHeight: true
    }
}
