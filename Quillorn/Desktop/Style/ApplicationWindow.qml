import QtQuick
import QtQuick.Templates as T

T.ApplicationWindow {
    color: Theme.window
    font.family: "Inter"
    font.pixelSize: Theme.body
    LayoutMirroring.enabled: Qt.application.layoutDirection === Qt.RightToLeft
    LayoutMirroring.childrenInherit: true
}
