import QtQuick
import QtQuick.Layouts
import QuillornStyle

/// All keys, place by place.
Dialog {
    id: root

    title: Desk.titles.showKeys
    width: 460
    contentItem: RowList {
        id: list

        implicitHeight: Math.min(contentHeight, (root.parent?.height ?? 700) - 160)
        focus: true
        boundsBehavior: Flickable.StopAtBounds
        model: root.opened ? Desk.keys : []
        Accessible.name: root.title
        delegate: Item {
            id: row

            required property var modelData
            required property int index
            readonly property bool beginsPlace: index === 0 || Desk.keys[index - 1].place !== modelData.place

            width: list.width
            implicitHeight: column.implicitHeight
            Accessible.role: Accessible.ListItem
            Accessible.name: [modelData.title, modelData.keys].join(", ")
            Accessible.focusable: true

            FocusFrame {
                anchors.margins: 0
            }
            ColumnLayout {
                id: column

                anchors.fill: parent
                anchors.leftMargin: 6
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
