import QtQuick
import QtQuick.Controls
import QuillornStyle

/// A command of the menu that its keys call too.
MenuItem {
    id: root

    keys: ""
    Accessible.description: keys

    Shortcut {
        sequence: root.keys
        enabled: root.enabled
        onActivated: root.triggered()
    }
}
