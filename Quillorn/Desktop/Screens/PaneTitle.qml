import QtQuick
import QtQuick.Layouts
import QuillornStyle

/// The title over a group of settings.
RowLayout {
    property alias symbol: icon.name
    property alias text: words.text

    Layout.topMargin: 6
    spacing: 8

    SymbolIcon {
        id: icon

        visible: name !== ""
        color: Theme.secondaryText
    }
    Label {
        id: words

        font.pixelSize: Theme.heading
        font.weight: Font.DemiBold
        Accessible.role: Accessible.Heading
    }
}
