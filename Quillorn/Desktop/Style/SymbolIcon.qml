import QtQuick
import QtQuick.Window

/// One of the application's symbols, drawn in a colour.
Item {
    id: root

    property string name
    property color color: Theme.text
    property int size: 16

    implicitWidth: size
    implicitHeight: size
    Accessible.ignored: true

    // Apart, as an image's own implicit size is in the screen's pixels.
    Image {
        readonly property int pixels: Math.ceil(root.size * Screen.devicePixelRatio)

        anchors.fill: parent
        sourceSize: Qt.size(pixels, pixels)
        source: root.name ? "image://symbol/" + root.name + "/" + String(root.color).slice(1) : ""
        Accessible.ignored: true
    }
}
