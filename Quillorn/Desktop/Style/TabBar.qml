import QtQuick
import QtQuick.Templates as T

T.TabBar {
    id: control

    implicitWidth: contentWidth + leftPadding + rightPadding
    implicitHeight: Math.round(34 * Theme.textScale)
    spacing: 4
    contentItem: ListView {
        model: control.contentModel
        currentIndex: control.currentIndex
        spacing: control.spacing
        orientation: ListView.Horizontal
        boundsBehavior: Flickable.StopAtBounds
        flickableDirection: Flickable.AutoFlickIfNeeded
        snapMode: ListView.SnapToItem
        clip: true
    }
    background: Item {}
}
