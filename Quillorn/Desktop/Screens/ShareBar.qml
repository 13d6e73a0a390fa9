import QtQuick
import QtQuick.Layouts
import QuillornStyle

/// One share of a whole: its name, its figure, and a bar in its colour. `share` is between 0 and 1.
ColumnLayout {
    id: root

    property string name
    property string figure
    property real share: 0
    property color tone: Theme.fill
    property bool hasDot: true

    spacing: 5

    RowLayout {
        Layout.fillWidth: true
        spacing: 8

        Rectangle {
            implicitWidth: 8
            implicitHeight: 8
            radius: 4
            color: root.tone
            visible: root.hasDot
        }
        Label {
            Layout.fillWidth: true
            text: root.name
            elide: Text.ElideRight
        }
        Label {
            text: root.figure
            color: Theme.secondaryText
        }
    }
    Rectangle {
        Layout.fillWidth: true
        implicitHeight: 6
        radius: 3
        color: Theme.track

        Rectangle {
            width: Math.max(0, Math.min(1, root.share)) * parent.width
            height: parent.height
            radius: 3
            color: root.tone
        }
    }
}
