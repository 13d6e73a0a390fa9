import QtQuick

/// Repeats into a layout. Where a layout of Qt 6.4 is resized in the frame in which it has lost items it arranges them
/// once more, although they are gone by then. So it is to let go of them at once.
Repeater {
    id: root

    property bool hasLost: false

    function settle() {
        if (hasLost && parent) {
            hasLost = false;
            parent.ensurePolished();
        }
    }

    onItemRemoved: hasLost = true
    onItemAdded: settle()
    onCountChanged: settle()
}
