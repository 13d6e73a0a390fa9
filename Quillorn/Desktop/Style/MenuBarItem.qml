import QtQuick
import QtQuick.Templates as T

T.MenuBarItem {
    id: control

    implicitWidth: contentItem.implicitWidth + 20
    implicitHeight: 28
    font.pixelSize: Theme.body
    contentItem: Text {
        leftPadding: 10
        text: control.text.replace("&", "")
        textFormat: Text.PlainText
        font: control.font
        color: Theme.text
        verticalAlignment: Text.AlignVCenter
    }
    background: Rectangle {
        radius: 5
        color: control.highlighted ? Theme.selected : "transparent"
        border.width: control.highlighted ? Theme.outline : 0
        border.color: Theme.text
    }
}
