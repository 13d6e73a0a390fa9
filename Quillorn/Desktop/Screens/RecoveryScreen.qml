import QtQuick
import QtQuick.Layouts
import QuillornStyle

/// In place of everything, where the store can't be opened.
Item {
    id: root

    property var recovery: Recovery

    ColumnLayout {
        anchors.centerIn: parent
        width: Math.min(parent.width - 48, 560)
        spacing: 12

        SymbolIcon {
            Layout.alignment: Qt.AlignHCenter
            name: "exclamationmark.triangle.fill"
            color: Theme.amber
            size: 44
        }
        Label {
            Layout.fillWidth: true
            horizontalAlignment: Text.AlignHCenter
            text: "Quillorn couldn't open your data"
            font.pixelSize: Theme.title
            font.weight: Font.DemiBold
            wrapMode: Text.Wrap
            Accessible.role: Accessible.Heading
        }
        Label {
            Layout.fillWidth: true
            horizontalAlignment: Text.AlignHCenter
            text: "Your data hasn't been changed or deleted. This usually means the app needs an update to read a newer database format."
            wrapMode: Text.Wrap
        }
        Card {
            Layout.fillWidth: true

            SelectableText {
                Layout.fillWidth: true
                text: root.recovery.message ?? ""
            }
        }
        Label {
            Layout.topMargin: 8
            Layout.fillWidth: true
            text: "Your hourly backups are safe here:"
            color: Theme.secondaryText
        }
        SelectableText {
            Layout.fillWidth: true
            text: root.recovery.folder ?? ""
        }
        RowLayout {
            Layout.topMargin: 12
            Layout.alignment: Qt.AlignHCenter
            spacing: 8

            Button {
                text: "Reveal Backups in Finder"
                onClicked: Qt.openUrlExternally("file://" + encodeURI(root.recovery.folder))
            }
            Button {
                text: "Quit"
                highlighted: true
                focus: true
                onClicked: Qt.quit()
            }
        }
    }
}
