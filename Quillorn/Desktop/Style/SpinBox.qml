import QtQuick
import QtQuick.Templates as T
import QuillornStyle

T.SpinBox {
    id: control

    implicitWidth: 96
    implicitHeight: Theme.controlHeight
    leftPadding: 10
    rightPadding: 34
    font.pixelSize: Theme.body
    editable: true
    validator: IntValidator {
        bottom: Math.min(control.from, control.to)
        top: Math.max(control.from, control.to)
    }
    // Without the separators of a locale: it is a port or an hour more often than an amount.
    textFromValue: value => String(value)
    valueFromText: text => parseInt(text) || control.from

    contentItem: TextInput {
        text: control.displayText
        font: control.font
        color: control.enabled ? Theme.text : Theme.tertiaryText
        selectionColor: Theme.fill
        selectedTextColor: Theme.fillText
        verticalAlignment: Qt.AlignVCenter
        readOnly: !control.editable
        validator: control.validator
        inputMethodHints: control.inputMethodHints
        selectByMouse: true
    }
    up.indicator: Item {
        x: control.width - width
        width: 26
        height: control.height / 2

        SymbolIcon {
            anchors.centerIn: parent
            name: "chevron.up"
            size: 10
            color: control.up.pressed ? Theme.accent : Theme.secondaryText
        }
    }
    down.indicator: Item {
        x: control.width - width
        y: control.height / 2
        width: 26
        height: control.height / 2

        SymbolIcon {
            anchors.centerIn: parent
            name: "chevron.down"
            size: 10
            color: control.down.pressed ? Theme.accent : Theme.secondaryText
        }
    }
    background: Rectangle {
        radius: Theme.controlRadius
        color: Theme.control
        border.color: control.activeFocus ? Theme.accent : Theme.edge
        border.width: control.activeFocus ? 2 : 1
    }
}
