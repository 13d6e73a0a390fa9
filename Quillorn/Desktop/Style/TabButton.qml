import QtQuick
import QtQuick.Templates as T
import QuillornStyle

T.TabButton {
    id: control

    width: implicitWidth
    implicitWidth: row.implicitWidth + 24
    implicitHeight: Math.round(34 * Theme.textScale)
    font.pixelSize: Theme.body
    font.weight: checked ? Font.DemiBold : Font.Normal
    Accessible.name: text
    Accessible.onPressAction: clicked()

    contentItem: Item {
        Row {
            id: row

            anchors.centerIn: parent
            spacing: 6

            SymbolIcon {
                anchors.verticalCenter: parent.verticalCenter
                visible: control.icon.name !== "" && control.display !== T.TabButton.TextOnly
                name: control.icon.name
                color: control.checked ? Theme.accent : Theme.secondaryText
            }
            Text {
                anchors.verticalCenter: parent.verticalCenter
                text: control.text
                textFormat: Text.PlainText
                font: control.font
                color: control.checked ? Theme.text : Theme.secondaryText
            }
        }
    }
    background: Rectangle {
        color: control.hovered && !control.checked ? Theme.hovered : "transparent"
        radius: Theme.controlRadius

        Rectangle {
            anchors.bottom: parent.bottom
            anchors.horizontalCenter: parent.horizontalCenter
            width: parent.width - 12
            height: 2
            radius: 1
            color: Theme.accent
            visible: control.checked
        }
    }

    FocusFrame {
        anchors.margins: 1
    }
}
