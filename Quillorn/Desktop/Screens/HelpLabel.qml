import QtQuick
import QtQuick.Layouts
import QuillornStyle

/// What a setting means, under it.
Label {
    Layout.fillWidth: true
    font.pixelSize: Theme.caption
    color: Theme.secondaryText
    wrapMode: Text.Wrap
}
