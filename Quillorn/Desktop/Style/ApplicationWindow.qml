import QtQuick
import QtQuick.Templates as T

T.ApplicationWindow {
    /// What isn't seen at first can be made from here on.
    property bool isDrawn: false

    color: Theme.window
    font.family: "Inter"
    font.pixelSize: Theme.body
    LayoutMirroring.enabled: Qt.application.layoutDirection === Qt.RightToLeft
    LayoutMirroring.childrenInherit: true
    onFrameSwapped: isDrawn = true
}
