import QtQuick
import QtQuick.Templates as T
import QuillornStyle

T.RadioButton {
    id: control

    implicitWidth: implicitContentWidth + leftPadding + rightPadding
    implicitHeight: Math.max(implicitContentHeight, implicitIndicatorHeight, 24)
    spacing: 8
    font.pixelSize: Theme.body
    opacity: enabled ? 1 : 0.5
    Accessible.name: text

    indicator: SymbolIcon {
        y: (control.height - height) / 2
        name: control.checked ? "largecircle.fill.circle" : "circle"
        color: control.checked ? Theme.fill : Theme.edge

        FocusFrame {
            control: parent
            radius: 10
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
    }
}
