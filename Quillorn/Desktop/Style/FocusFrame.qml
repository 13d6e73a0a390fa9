import QtQuick

/// Shows which control the keyboard speaks to.
Rectangle {
    property Item control: parent

    anchors.fill: control
    anchors.margins: -2
    radius: Theme.controlRadius + 2
    color: "transparent"
    border.color: Theme.accent
    border.width: 2
    visible: control.visualFocus ?? control.activeFocus
}
