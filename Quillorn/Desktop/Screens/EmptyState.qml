import QtQuick
import QtQuick.Layouts
import QuillornStyle

/// What stands where there is nothing yet, with one thing to do about it.
ColumnLayout {
    id: root

    property string symbol
    property string title
    property string text
    property string action

    signal acted

    spacing: 8

    Rectangle {
        Layout.alignment: Qt.AlignHCenter
        Layout.bottomMargin: 4
        implicitWidth: 56
        implicitHeight: 56
        radius: 14
        color: Theme.tint(Theme.accent)
        visible: root.symbol !== ""

        SymbolIcon {
            anchors.centerIn: parent
            name: root.symbol
            color: Theme.accent
            size: 26
        }
    }
    Label {
        Layout.fillWidth: true
        horizontalAlignment: Text.AlignHCenter
        text: root.title
        font.pixelSize: Theme.heading
        font.weight: Font.DemiBold
        wrapMode: Text.Wrap
        Accessible.role: Accessible.Heading
    }
    Label {
        Layout.fillWidth: true
        Layout.maximumWidth: 340
        Layout.alignment: Qt.AlignHCenter
        horizontalAlignment: Text.AlignHCenter
        text: root.text
        color: Theme.secondaryText
        wrapMode: Text.Wrap
        visible: text !== ""
    }
    Button {
        Layout.alignment: Qt.AlignHCenter
        Layout.topMargin: 8
        text: root.action
        visible: text !== ""
        onClicked: root.acted()
    }
}
