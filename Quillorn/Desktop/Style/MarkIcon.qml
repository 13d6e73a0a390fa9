import QtQuick
import QtQuick.Window

/// An emoji that says how urgent something is.
Image {
    property string mark
    readonly property int size: Math.round(Theme.caption * 1.25)

    width: size
    height: size
    visible: mark !== ""
    sourceSize: Qt.size(Math.ceil(size * Screen.devicePixelRatio), Math.ceil(size * Screen.devicePixelRatio))
    source: mark ? "image://mark/" + encodeURIComponent(mark) + "/" + size : ""
    Accessible.ignored: true
}
