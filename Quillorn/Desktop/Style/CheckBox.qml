import QtQuick
import QtQuick.Templates as T
import QuillornStyle

T.CheckBox {
    id: control

    implicitWidth: implicitContentWidth + leftPadding + rightPadding
    implicitHeight: Math.max(implicitContentHeight, implicitIndicatorHeight, 24)
    spacing: 8
    font.pixelSize: Theme.body
    opacity: enabled ? 1 : 0.5
    Accessible.name: text

    indicator: Rectangle {
        implicitWidth: 16
        implicitHeight: 16
        y: (control.height - height) / 2
        radius: 4
        color: control.checkState === Qt.Unchecked ? Theme.control : Theme.fill
        border.color: control.checkState === Qt.Unchecked ? Theme.edge : Theme.fill

        SymbolIcon {
            anchors.centerIn: parent
            visible: control.checkState !== Qt.Unchecked
            name: control.checkState === Qt.PartiallyChecked ? "minus" : "checkmark"
            color: Theme.fillText
            size: 14
        }
        FocusFrame {
            control: parent
            visible: parent.parent.visualFocus
        }
    }
    contentItem: Text {
        leftPadding: control.indicator.width + control.spacing
        text: control.text
        textFormat: Text.PlainText
        font: control.font
        color: Theme.text
        verticalAlignment: Text.AlignVCenter
        wrapMode: Text.Wrap
    }
}
