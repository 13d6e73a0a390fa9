import QtQuick
import QtQuick.Templates as T
import QuillornStyle

T.RadioButton {
    id: control

    /// By a screen reader, for which the toolkit itself sets the property and tells nobody.
    function press() {
        if (checked)
            return;
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

    indicator: SymbolIcon {
        x: control.mirrored ? control.width - width : 0
        y: (control.height - height) / 2
        name: control.checked ? "largecircle.fill.circle" : "circle"
        color: control.checked ? Theme.accent : Theme.edge

        FocusFrame {
            control: parent
            radius: 10
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
        verticalAlignment: Text.AlignVCenter
    }
}
