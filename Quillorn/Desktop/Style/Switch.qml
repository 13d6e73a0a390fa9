import QtQuick
import QtQuick.Templates as T

T.Switch {
    id: control

    /// By a screen reader, for which the toolkit itself sets the property and tells nobody.
    function press() {
        toggle();
        toggled();
        clicked();
    }

    implicitWidth: implicitContentWidth + leftPadding + rightPadding
    implicitHeight: Math.max(implicitContentHeight, implicitIndicatorHeight, 24)
    spacing: 8
    font.pixelSize: Theme.body
    opacity: enabled ? 1 : 0.5
    Accessible.name: text
    Accessible.onPressAction: press()
    Accessible.onToggleAction: press()

    indicator: Rectangle {
        implicitWidth: 34
        implicitHeight: 20
        x: control.mirrored ? control.width - width : 0
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
        leftPadding: control.mirrored ? 0 : control.indicator.width + control.spacing
        rightPadding: control.mirrored ? control.indicator.width + control.spacing : 0
        text: control.text
        textFormat: Text.PlainText
        font: control.font
        color: Theme.text
        horizontalAlignment: Text.AlignLeft
        verticalAlignment: Text.AlignVCenter
        wrapMode: Text.Wrap
    }
}
