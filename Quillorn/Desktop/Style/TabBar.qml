import QtQuick
import QtQuick.Templates as T

T.TabBar {
    id: control

    implicitWidth: contentWidth + leftPadding + rightPadding
    implicitHeight: Math.round(34 * Theme.textScale)
    spacing: 4
    contentItem: ListView {
        // From right to left a list of Qt 6.4 loses sight of its items when they are others: it stands at the right, in
        // the order of the others.
        LayoutMirroring.enabled: false
        leftMargin: control.mirrored ? Math.max(0, width - contentWidth) : 0
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
