import QtQuick
import QtQuick.Templates as T
import QtQuick.Window

T.TabBar {
    id: control

    implicitWidth: contentWidth + leftPadding + rightPadding
    implicitHeight: Math.round(34 * Theme.textScale)
    spacing: 4
    clip: true
    // No list: from right to left one of Qt 6.4 loses sight of its items when it becomes narrower.
    contentItem: Row {
        id: tabs

        readonly property Item focused: Window.activeFocusItem
        readonly property bool isTooWide: implicitWidth > width
        property real shift: 0

        /// Keeps the tab that has the keyboard within sight, with an edge of the next one.
        function follow() {
            if (!isTooWide || focused?.parent !== tabs)
                return;
            const start = focused.x - 24;
            const end = focused.x + focused.width + 24;
            shift = start + shift < 0 ? -start : Math.min(shift, width - end);
        }

        spacing: control.spacing
        transform: Translate {
            x: tabs.shift
        }
        onFocusedChanged: follow()
        onIsTooWideChanged: shift = 0

        Repeater {
            model: control.contentModel
        }
    }
    background: Item {}
}
