import QtQuick
import QtQuick.Templates as T
import QuillornStyle

/// `highlighted` is the one to take; a `flat` one has no ground until it is pointed at. `icon.name` is a symbol.
T.Button {
    id: control

    property color tone: highlighted ? Theme.fillText : Theme.text

    /// For whatever the toolkit doesn't press it by itself: Return, and screen readers.
    function press() {
        if (checkable) {
            toggle();
            toggled();
        }
        clicked();
    }

    implicitWidth: Math.max(implicitContentWidth + leftPadding + rightPadding, implicitHeight)
    implicitHeight: Theme.controlHeight
    horizontalPadding: text ? 11 : 7
    spacing: 6
    font.pixelSize: Theme.body
    font.weight: Font.Medium
    opacity: enabled ? 1 : 0.5
    Accessible.name: text || T.ToolTip.text
    T.ToolTip.visible: (hovered || visualFocus) && T.ToolTip.text !== "" && !text
    T.ToolTip.delay: 600
    Accessible.onPressAction: press()
    Keys.onReturnPressed: press()

    contentItem: Item {
        implicitWidth: row.implicitWidth
        implicitHeight: row.implicitHeight

        Row {
            id: row

            anchors.centerIn: parent
            spacing: control.spacing

            SymbolIcon {
                anchors.verticalCenter: parent.verticalCenter
                visible: control.icon.name !== ""
                name: control.icon.name
                color: control.icon.color.a > 0 ? control.icon.color : control.tone
            }
            Text {
                anchors.verticalCenter: parent.verticalCenter
                visible: control.text !== ""
                text: control.text
                textFormat: Text.PlainText
                font: control.font
                color: control.tone
            }
        }
    }
    background: Rectangle {
        readonly property color filled: Qt.darker(Theme.fill, control.down ? 1.2 : control.hovered ? 1.08 : 1)
        readonly property color idle: control.flat ? "transparent" : Theme.control
        readonly property color plain: control.down || control.checked ? Theme.selected : control.hovered ? Theme.hovered : idle

        radius: Theme.controlRadius
        color: control.highlighted ? filled : plain
        border.width: !control.flat && !control.highlighted ? 1 : control.checked ? Theme.outline : 0
        border.color: Theme.edge
    }

    FocusFrame {}
}
