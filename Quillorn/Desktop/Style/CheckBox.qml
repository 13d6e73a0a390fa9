import QtQuick
import QtQuick.Templates as T
import QuillornStyle

T.CheckBox {
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
        implicitWidth: 16
        implicitHeight: 16
        x: control.mirrored ? control.width - width : 0
        y: (control.height - height) / 2
        radius: 4
        color: control.checkState === Qt.Unchecked ? Theme.control : Theme.fill
        border.color: control.checkState === Qt.Unchecked ? Theme.edge : Theme.accent

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
