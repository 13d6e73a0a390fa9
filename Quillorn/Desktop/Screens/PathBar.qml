import QtQuick
import QtQuick.Layouts
import QuillornStyle

/// The way to a record; each step leads there.
RowLayout {
    id: root

    property var path: []

    signal opened(string kind, string record)

    spacing: 4

    LayoutRepeater {
        model: root.path

        RowLayout {
            id: step

            required property var modelData
            required property int index

            spacing: 4

            SymbolIcon {
                visible: step.index > 0
                name: "chevron.right"
                color: Theme.tertiaryText
                size: 10
            }
            AbstractChip {
                implicitWidth: Math.min(Math.ceil(name.implicitWidth), 160)
                Layout.fillWidth: true
                Layout.minimumWidth: 24
                Layout.maximumWidth: implicitWidth
                implicitHeight: 24
                Accessible.name: step.modelData.name
                onClicked: root.opened(step.modelData.kind, step.modelData.id)
                contentItem: Label {
                    id: name

                    text: step.modelData.name
                    font.pixelSize: Theme.caption
                    color: Theme.secondaryText
                    elide: Text.ElideRight
                    verticalAlignment: Text.AlignVCenter
                }
                background: FocusFrame {}
            }
        }
    }
    Item {
        Layout.fillWidth: true
    }
}
