import QtQuick
import QtQuick.Layouts
import QuillornStyle

ColumnLayout {
    id: root

    required property string recordId
    required property string when
    required property string content

    signal deleteWanted

    spacing: 2

    RowLayout {
        Layout.fillWidth: true

        Label {
            Layout.fillWidth: true
            text: root.when
            font.pixelSize: Theme.small
            color: Theme.secondaryText
        }
        ToolButton {
            implicitHeight: 20
            tip: "Delete Comment"
            icon.name: "xmark"
            tone: Theme.tertiaryText
            onClicked: root.deleteWanted()
        }
    }
    MarkdownText {
        Layout.fillWidth: true
        source: root.content
        label: root.when
    }
}
