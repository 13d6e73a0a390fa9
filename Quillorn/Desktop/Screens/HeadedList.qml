import QtQuick

/// A list under cards of its own, which come a moment later than its rows: it stays at its beginning until somebody has
/// moved it.
RowList {
    id: root

    property bool isTouched: false

    onModelChanged: {
        isTouched = false;
        Qt.callLater(positionViewAtBeginning);
    }
    onOriginYChanged: if (!isTouched)
        positionViewAtBeginning()
    onMovementStarted: isTouched = true
    onCurrentIndexChanged: isTouched = true
}
