import QtQuick

/// A popup of the window it fills, which is where the popup is placed.
Late {
    anchors.fill: parent
}
