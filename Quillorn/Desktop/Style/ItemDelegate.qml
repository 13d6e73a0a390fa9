import QtQuick
import QtQuick.Templates as T

T.ItemDelegate {
    id: control

    implicitWidth: implicitContentWidth + leftPadding + rightPadding
    implicitHeight: Math.max(implicitContentHeight + topPadding + bottomPadding, 28)
    horizontalPadding: 10
    verticalPadding: 4
    spacing: 8
    font.pixelSize: Theme.body
    // A list is one stop of the Tab key: its rows are reached by arrow keys.
    focusPolicy: ListView.view ? Qt.NoFocus : Qt.StrongFocus
    Accessible.focusable: enabled
    Accessible.name: text
    Accessible.onPressAction: clicked()
    Keys.onReturnPressed: clicked()

    contentItem: Text {
        text: control.text
        textFormat: Text.PlainText
        font: control.font
        color: control.enabled ? Theme.text : Theme.tertiaryText
        elide: Text.ElideRight
        horizontalAlignment: Text.AlignLeft
        verticalAlignment: Text.AlignVCenter
    }
    background: Rectangle {
        radius: Theme.controlRadius
        color: control.highlighted || control.down ? Theme.selected : control.hovered ? Theme.hovered : "transparent"
        border.width: control.highlighted ? Theme.outline : 0
        border.color: Theme.text
    }

    FocusFrame {
        anchors.margins: 0
        visible: control.visualFocus || (control.activeFocus && control.ListView.isCurrentItem)
    }
}
