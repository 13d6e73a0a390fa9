import QtQuick
import QtQuick.Templates as T

T.Switch {
    id: control

    implicitWidth: implicitContentWidth + leftPadding + rightPadding
    implicitHeight: Math.max(implicitContentHeight, implicitIndicatorHeight, 24)
    spacing: 8
    font.pixelSize: Theme.body
    opacity: enabled ? 1 : 0.5
    Accessible.name: text

    indicator: Rectangle {
        implicitWidth: 34
        implicitHeight: 20
        y: (control.height - height) / 2
        radius: 10
        color: control.checked ? Theme.fill : Theme.edge

        Rectangle {
            x: 2 + control.visualPosition * (parent.width - width - 4)
            y: 2
            width: 16
            height: 16
            radius: 8
            color: Theme.fillText

            Behavior on x {
                NumberAnimation {
                    duration: Theme.motion
                }
            }
        }
        FocusFrame {
            control: parent
            radius: 12
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
