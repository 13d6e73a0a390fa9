import QtQuick
import QtQuick.Window

/// A square picture of one of the application's image providers, as sharp as the screen.
Item {
    id: root

    property string source
    property int size: 16

    implicitWidth: size
    implicitHeight: size
    Accessible.ignored: true

    // Apart, as an image's own implicit size is in the pixels of the screen.
    Image {
        readonly property int pixels: Math.ceil(root.size * Screen.devicePixelRatio)

        anchors.fill: parent
        sourceSize: Qt.size(pixels, pixels)
        source: root.source
        Accessible.ignored: true
    }
}
