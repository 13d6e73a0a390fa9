import QtQuick
import QtQuick.Templates as T
import QuillornStyle

T.MenuItem {
    id: control

    property string keys: action && action.shortcut ? action.shortcut : ""

    implicitWidth: words.implicitWidth + keyWords.implicitWidth + leftPadding + rightPadding + 16
    implicitHeight: visible ? 28 : 0
    leftPadding: mirrored ? (subMenu ? 26 : 12) : 28
    rightPadding: mirrored ? 28 : subMenu ? 26 : 12
    font.pixelSize: Theme.body
    Accessible.onPressAction: {
        if (subMenu) {
            subMenu.popup(control, mirrored ? -subMenu.width : width, 0);
            return;
        }
        triggered();
        menu?.dismiss();
    }

    indicator: SymbolIcon {
        x: control.mirrored ? control.width - width - 8 : 8
        anchors.verticalCenter: parent.verticalCenter
        visible: control.checked || control.icon.name !== ""
        name: control.checked ? "checkmark" : control.icon.name
        color: control.enabled ? Theme.text : Theme.tertiaryText
        size: 14
    }
    arrow: SymbolIcon {
        x: control.mirrored ? 8 : control.width - width - 8
        anchors.verticalCenter: parent.verticalCenter
        visible: control.subMenu
        name: control.mirrored ? "chevron.left" : "chevron.right"
        color: Theme.secondaryText
        size: 12
    }
    contentItem: Item {
        implicitHeight: words.implicitHeight

        Text {
            id: words

            anchors.verticalCenter: parent.verticalCenter
            anchors.left: parent.left
            text: control.text
            textFormat: Text.PlainText
            font: control.font
            color: control.enabled ? Theme.text : Theme.tertiaryText
            opacity: control.enabled ? 1 : 0.7
        }
        Text {
            id: keyWords

            anchors.verticalCenter: parent.verticalCenter
            anchors.right: parent.right
            text: control.keys
            textFormat: Text.PlainText
            font.pixelSize: Theme.caption
            color: Theme.tertiaryText
        }
    }
    background: Rectangle {
        radius: 5
        color: control.highlighted && control.enabled ? Theme.selected : "transparent"
        border.width: control.highlighted && control.enabled ? Theme.outline : 0
        border.color: Theme.text
    }
}
