import QtQuick
import QtQuick.Layouts
import QuillornStyle

/// The lists that are to be scanned.
ColumnLayout {
    id: root

    property QtObject importing

    spacing: 8

    Label {
        visible: lists.count > 0
        text: root.importing?.words.listsTitle ?? ""
        font.weight: Font.DemiBold
        Accessible.role: Accessible.Heading
    }
    LayoutRepeater {
        id: lists

        model: root.importing?.lists ?? []

        CheckBox {
            required property var modelData

            Layout.fillWidth: true
            text: modelData.name
            checked: modelData.isChosen
            onToggled: root.importing.setChosen(modelData.name, checked)
        }
    }
    Label {
        Layout.fillWidth: true
        Layout.topMargin: 4
        text: root.importing?.words.note ?? ""
        font.pixelSize: Theme.caption
        color: Theme.secondaryText
        wrapMode: Text.Wrap
    }
}
