import QtQuick
import QtQuick.Layouts
import QuillornStyle

ItemDelegate {
    id: root

    required property string recordId
    required property string title
    required property bool isCompleted
    required property string toggleLabel

    signal toggled
    signal picked

    implicitHeight: Math.round(28 * Theme.textScale)
    horizontalPadding: 6
    Accessible.name: title
    onClicked: picked()
    contentItem: RowLayout {
        spacing: 8

        AbstractChip {
            implicitWidth: 20
            implicitHeight: 20
            Accessible.name: root.toggleLabel
            onClicked: root.toggled()
            contentItem: Item {
                SymbolIcon {
                    anchors.centerIn: parent
                    name: root.isCompleted ? "checkmark.circle.fill" : "circle"
                    color: root.isCompleted ? Theme.accent : Theme.edge
                }
            }
            background: FocusFrame {}
        }
        Label {
            Layout.fillWidth: true
            text: root.title
            font.strikeout: root.isCompleted
            color: root.isCompleted ? Theme.tertiaryText : Theme.text
            elide: Text.ElideRight
        }
    }
}
