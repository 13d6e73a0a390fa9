import QtQuick
import QtQuick.Layouts
import QuillornStyle

/// Says that what is being edited was changed by somebody else.
RowLayout {
    id: root

    property alias text: words.text

    signal reverted

    SymbolIcon {
        name: "exclamationmark.triangle.fill"
        color: Theme.amber
    }
    Label {
        id: words

        color: Theme.amber
        wrapMode: Text.Wrap
        Accessible.role: Accessible.AlertMessage
    }
    Button {
        text: "Show Theirs"
        focusPolicy: Qt.NoFocus // leaving the field would save it; Esc does the same there
        ToolTip.text: "Esc"
        ToolTip.visible: hovered
        flat: true
        tone: Theme.accent
        onClicked: root.reverted()
    }
}
