import QtQuick
import QtQuick.Templates as T

T.ScrollBar {
    id: control

    implicitWidth: implicitContentWidth + leftPadding + rightPadding
    implicitHeight: implicitContentHeight + topPadding + bottomPadding
    padding: 3
    minimumSize: 0.06
    Accessible.ignored: true // the keyboard moves what is scrolled
    visible: policy !== T.ScrollBar.AlwaysOff && size < 1

    contentItem: Rectangle {
        implicitWidth: control.hovered || control.pressed ? 8 : 6
        implicitHeight: implicitWidth
        radius: 4
        color: Theme.edge
        opacity: control.active || control.policy === T.ScrollBar.AlwaysOn ? 0.8 : 0.35
    }
}
