import QtQuick
import QtQuick.Templates as T
import QuillornStyle

T.BusyIndicator {
    id: control

    implicitWidth: 16
    implicitHeight: 16
    visible: running
    contentItem: SymbolIcon {
        name: "arrow.triangle.2.circlepath"
        color: Theme.secondaryText

        RotationAnimator on rotation {
            running: control.running && control.visible && !Theme.isStill
            from: 0
            to: 360
            duration: 1200
            loops: Animation.Infinite
        }
    }
}
