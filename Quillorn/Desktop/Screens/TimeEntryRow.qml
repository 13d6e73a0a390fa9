import QtQuick
import QtQuick.Layouts
import QuillornStyle

/// A time entry, or the head of its day.
Item {
    id: root

    required property bool isHeading
    required property string title
    required property string subtitle
    required property string tone
    required property string times
    required property string duration
    required property string notes
    required property bool isRunning
    required property string entry

    signal picked
    signal deleteWanted

    implicitHeight: Math.round(36 * Theme.textScale)
    activeFocusOnTab: !isHeading
    Keys.onReturnPressed: picked()
    Keys.onSpacePressed: picked()
    Keys.onDeletePressed: deleteWanted()
    Accessible.role: isHeading ? Accessible.Heading : Accessible.Button
    Accessible.name: [title, subtitle, times, duration].filter(word => word).join(", ")
    Accessible.onPressAction: picked()

    Rectangle {
        anchors.fill: parent
        radius: Theme.controlRadius
        color: hover.hovered ? Theme.hovered : "transparent"
        border.width: root.activeFocus ? 2 : 0
        border.color: Theme.accent
    }
    Rectangle {
        anchors.bottom: parent.bottom
        width: parent.width
        height: 1
        color: Theme.line
    }
    HoverHandler {
        id: hover

        enabled: !root.isHeading
    }
    TapHandler {
        enabled: !root.isHeading
        onTapped: root.picked()
    }
    RowLayout {
        anchors.fill: parent
        anchors.leftMargin: 4
        anchors.rightMargin: 8
        spacing: 10

        Rectangle {
            visible: !root.isHeading
            implicitWidth: 8
            implicitHeight: 8
            radius: 4
            color: root.tone ? Theme.shade(root.tone) : Theme.edge
        }
        Label {
            Layout.fillWidth: true
            Layout.preferredWidth: 3
            text: root.title
            font.weight: root.isHeading ? Font.DemiBold : Font.Medium
            font.pixelSize: root.isHeading ? Theme.caption : Theme.body
            color: root.isHeading ? Theme.secondaryText : Theme.text
            elide: Text.ElideRight
        }
        Label {
            Layout.fillWidth: true
            Layout.preferredWidth: 2
            visible: !root.isHeading
            text: root.subtitle
            color: Theme.secondaryText
            elide: Text.ElideRight
        }
        Label {
            Layout.preferredWidth: 150
            visible: !root.isHeading
            text: root.times
            color: root.isRunning ? Theme.green : Theme.secondaryText
            elide: Text.ElideRight
        }
        ClockText {
            text: root.duration
            color: root.isRunning ? Theme.green : root.isHeading ? Theme.secondaryText : Theme.text
        }
        ToolButton {
            visible: !root.isHeading
            opacity: hover.hovered || activeFocus ? 1 : 0
            focusPolicy: Qt.NoFocus
            tip: "Delete"
            icon.name: "trash"
            onClicked: root.deleteWanted()
        }
    }
}
