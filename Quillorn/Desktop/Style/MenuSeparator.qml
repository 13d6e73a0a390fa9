import QtQuick
import QtQuick.Templates as T

T.MenuSeparator {
    implicitWidth: 100
    implicitHeight: 9
    contentItem: Rectangle {
        y: 4
        height: 1
        color: Theme.line
    }
}
