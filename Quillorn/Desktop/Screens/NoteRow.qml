import QtQuick
import QtQuick.Layouts
import QuillornStyle

ItemDelegate {
    id: root

    required property int index
    required property string recordId
    required property string title
    required property string preview
    required property string when
    required property string project
    required property string tone
    required property bool isPinned
    required property string pinButton

    signal picked
    signal pinToggled
    signal deleteWanted

    function openMenu() {
        menu.openUnder(root);
    }

    implicitHeight: Math.round(62 * Theme.textScale)
    Accessible.name: [title, project, when].filter(word => word).join(", ")
    onClicked: picked()
    onPressAndHold: menu.popup()

    TapHandler {
        acceptedButtons: Qt.RightButton
        onTapped: menu.popup()
    }
    Menu {
        id: menu

        MenuItem {
            text: root.pinButton
            onTriggered: root.pinToggled()
        }
        MenuItem {
            text: "Delete…"
            icon.name: "trash"
            onTriggered: root.deleteWanted()
        }
    }
    contentItem: ColumnLayout {
        spacing: 2

        RowLayout {
            Layout.fillWidth: true

            Label {
                Layout.fillWidth: true
                text: root.title
                font.weight: Font.Medium
                elide: Text.ElideRight
            }
            SymbolIcon {
                visible: root.isPinned
                name: "flag.fill"
                color: Theme.amber
                size: 12
            }
            Label {
                text: root.when
                font.pixelSize: Theme.small
                color: Theme.secondaryText
            }
        }
        Label {
            Layout.fillWidth: true
            text: root.preview
            font.pixelSize: Theme.caption
            color: Theme.secondaryText
            elide: Text.ElideRight
            maximumLineCount: 1
        }
        Row {
            visible: root.project !== ""
            spacing: 5

            Rectangle {
                anchors.verticalCenter: parent.verticalCenter
                width: 8
                height: 8
                radius: 4
                color: Theme.shade(root.tone)
            }
            Label {
                text: root.project
                font.pixelSize: Theme.small
                color: Theme.secondaryText
            }
        }
    }
}
