import QtQuick
import QtQuick.Templates as T

T.ApplicationWindow {
    color: Theme.window
    font.family: "Inter"
    font.pixelSize: Theme.body
}
