import QtQuick
import QtQuick.Templates as T

T.SplitView {
    id: control

    handle: Rectangle {
        implicitWidth: 1
        implicitHeight: 1
        color: T.SplitHandle.hovered || T.SplitHandle.pressed ? Theme.accent : Theme.line
        containmentMask: Item {
            x: -4
            width: 9
            height: control.height
        }
    }
}
