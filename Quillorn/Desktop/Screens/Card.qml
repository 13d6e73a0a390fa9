import QtQuick
import QtQuick.Layouts
import QuillornStyle

/// A frame around something that belongs together, with a title where there is one.
Rectangle {
    id: root

    property string title
    default property alias content: column.data

    implicitWidth: column.implicitWidth + 32
    implicitHeight: column.implicitHeight + 28
    radius: Theme.cardRadius
    color: Theme.card
    border.color: Theme.line

    ColumnLayout {
        id: column

        anchors.fill: parent
        anchors.leftMargin: 16
        anchors.rightMargin: 16
        anchors.topMargin: 14
        anchors.bottomMargin: 14
        spacing: 8

        Label {
            Layout.fillWidth: true
            text: root.title
            visible: text !== ""
            font.weight: Font.DemiBold
            elide: Text.ElideRight
            Accessible.role: Accessible.Heading
        }
    }
}
