import QtQuick
import QtQuick.Templates as T

T.MenuBar {
    id: control

    implicitWidth: contentItem.implicitWidth
    implicitHeight: 28
    delegate: MenuBarItem {}
    contentItem: Row {
        Repeater {
            model: control.contentModel
        }
    }
    background: Rectangle {
        color: Theme.sidebar
    }
}
