import QtQuick
import QtQuick.Templates as T

T.ProgressBar {
    id: control

    implicitWidth: 120
    implicitHeight: 6
    contentItem: Item {
        Rectangle {
            width: control.visualPosition * parent.width
            height: parent.height
            radius: 3
            color: Theme.accent
        }
    }
    background: Rectangle {
        radius: 3
        color: Theme.track
    }
}
