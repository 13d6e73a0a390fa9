import QtQuick.Layouts
import QuillornStyle

/// A switch whose words go on in another line where its column is narrow.
Switch {
    Layout.fillWidth: true
    Layout.maximumWidth: implicitWidth
}
