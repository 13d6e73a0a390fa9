import QtQuick
import QtQuick.Layouts
import QuillornStyle

ItemDelegate {
    id: root

    required property string recordId
    required property string times
    required property string title
    required property string duration
    required property bool isRunning

    signal picked

    implicitHeight: Math.round(34 * Theme.textScale)
    Accessible.name: [times, title, duration].filter(word => word).join(", ")
    onClicked: picked()
    contentItem: RowLayout {
        spacing: 10

        Rectangle {
            visible: root.isRunning
            implicitWidth: 8
            implicitHeight: 8
            radius: 4
            color: Theme.green
        }
        Label {
            text: root.times
            color: Theme.secondaryText
        }
        Label {
            Layout.fillWidth: true
            text: root.title
            color: root.isRunning ? Theme.green : Theme.text
            elide: Text.ElideRight
        }
        ClockText {
            text: root.duration
            color: root.isRunning ? Theme.green : Theme.text
        }
    }
}
