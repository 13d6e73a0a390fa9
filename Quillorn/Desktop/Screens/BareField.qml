import QtQuick
import QuillornStyle

/// A line to type in without a box around it.
TextField {
    leftPadding: 0
    rightPadding: 0
    implicitHeight: contentHeight + 4
    background: Item {
        implicitWidth: 160
    }
}
