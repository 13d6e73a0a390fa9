import QtQuick
import QtQuick.Window

/// One of the application's symbols, drawn in a colour.
Image {
    property string name
    property color color: Theme.text
    property int size: 16

    width: size
    height: size
    sourceSize: Qt.size(Math.ceil(size * Screen.devicePixelRatio), Math.ceil(size * Screen.devicePixelRatio))
    source: name ? "image://symbol/" + name + "/" + String(color).slice(1) + "/" + size : ""
    Accessible.ignored: true
}
