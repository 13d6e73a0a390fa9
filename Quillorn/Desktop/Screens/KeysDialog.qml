import QtQuick
import QtQuick.Layouts
import QtQuick.Controls
import QuillornStyle

/// All keys, place by place.
Dialog {
    id: root

    title: "Keys"
    width: 460
    contentItem: ListView {
        id: list

        implicitHeight: Math.min(contentHeight, (root.parent?.height ?? 700) - 160)
        clip: true
        focus: true
        boundsBehavior: Flickable.StopAtBounds
        model: root.opened ? Desk.keys : []
        Accessible.role: Accessible.List
        Accessible.name: root.title
        ScrollBar.vertical: ScrollBar {}
        Keys.onDownPressed: flick(0, -600)
        Keys.onUpPressed: flick(0, 600)
        delegate: ColumnLayout {
            id: row

            required property var modelData
            required property int index
            readonly property bool beginsPlace: index === 0 || Desk.keys[index - 1].place !== modelData.place

            width: list.width
            spacing: 0

            Label {
                Layout.topMargin: row.index > 0 ? 12 : 0
                Layout.bottomMargin: 4
                visible: row.beginsPlace
                text: row.modelData.place
                font.pixelSize: Theme.caption
                font.weight: Font.DemiBold
                color: Theme.secondaryText
                Accessible.role: Accessible.Heading
            }
            RowLayout {
                Layout.fillWidth: true
                Layout.preferredHeight: Math.round(26 * Theme.textScale)
                Layout.rightMargin: 12

                Label {
                    Layout.fillWidth: true
                    text: row.modelData.title
                    elide: Text.ElideRight
                }
                Label {
                    text: row.modelData.keys
                    color: Theme.secondaryText
                }
            }
        }
    }
    footer: RowLayout {
        Button {
            Layout.alignment: Qt.AlignRight
            Layout.margins: 16
            text: "Close"
            onClicked: root.close()
        }
    }
}
