import QtQuick

/// Ticks each second while something grows on a screen that is seen, and at once when that begins.
Timer {
    id: root

    property Item screen
    property bool isWanted: false
    readonly property int visibility: screen?.Window.visibility ?? Window.Hidden

    interval: 1000
    repeat: true
    triggeredOnStart: true
    running: isWanted && (screen?.visible ?? false) && visibility !== Window.Hidden && visibility !== Window.Minimized
}
