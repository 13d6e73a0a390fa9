import QtQuick
import QtQuick.Layouts
import QuillornStyle

/// A field with its label in front, as wide as its neighbours'.
RowLayout {
    id: root

    property string label
    property string help
    property int labelWidth: 96
    default property alias field: slot.data

    Layout.fillWidth: true
    Layout.fillHeight: false // as high as its words, wherever it stands
    spacing: 14

    Label {
        Layout.alignment: Qt.AlignTop
        Layout.preferredWidth: root.labelWidth
        Layout.preferredHeight: Theme.controlHeight
        horizontalAlignment: Text.AlignRight
        verticalAlignment: Text.AlignVCenter
        text: root.label
        color: Theme.secondaryText
        elide: Text.ElideRight
    }
    ColumnLayout {
        Layout.fillWidth: true
        spacing: 6

        RowLayout {
            id: slot

            Layout.fillWidth: true
            Layout.minimumHeight: Theme.controlHeight
            spacing: 8
        }
        Label {
            /// Told behind the layout's work, in which it doesn't notice how words have wrapped.
            property real lines: 0

            function tell() {
                lines = implicitHeight;
            }

            Layout.fillWidth: true
            Layout.preferredHeight: lines
            onImplicitHeightChanged: Qt.callLater(tell)
            text: root.help
            visible: text !== ""
            font.pixelSize: Theme.caption
            color: Theme.secondaryText
            wrapMode: Text.Wrap
        }
    }
}
