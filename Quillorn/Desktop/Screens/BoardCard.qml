import QtQuick
import QtQuick.Layouts
import QuillornStyle

Rectangle {
    id: root

    required property int index
    required property string taskId
    required property string title
    required property string mark
    required property string due
    required property bool isOverdue
    required property string subtasks
    required property string time
    required property var tags
    required property bool isCompleted
    property bool isShown: false
    property bool isFocused: false
    property Item carrier

    signal picked

    implicitHeight: column.implicitHeight + 20
    radius: Theme.rowRadius
    color: Theme.window
    border.color: isShown || isFocused ? Theme.accent : Theme.line
    border.width: isFocused ? 2 : 1
    Accessible.role: Accessible.ListItem
    Accessible.focusable: true
    Accessible.name: [title, due].filter(word => word).join(", ")
    Accessible.onPressAction: picked()

    TapHandler {
        onTapped: root.picked()
    }
    DragHandler {
        target: null
        enabled: root.carrier !== null
        acceptedDevices: PointerDevice.Mouse
        onCentroidChanged: if (active)
            root.carrier.carry(root, centroid.position, root.taskId, root.title)
        onActiveChanged: if (!active)
            root.carrier.drop()
    }
    ColumnLayout {
        id: column

        anchors.left: parent.left
        anchors.right: parent.right
        anchors.top: parent.top
        anchors.margins: 10
        spacing: 6

        RowLayout {
            Layout.fillWidth: true

            Label {
                Layout.fillWidth: true
                text: root.title
                font.weight: Font.Medium
                font.strikeout: root.isCompleted
                color: root.isCompleted ? Theme.tertiaryText : Theme.text
                wrapMode: Text.Wrap
                maximumLineCount: 3
                elide: Text.ElideRight
            }
            MarkIcon {
                Layout.alignment: Qt.AlignTop
                mark: root.mark
                size: Theme.caption + 3
            }
        }
        Flow {
            Layout.fillWidth: true
            spacing: 8

            Label {
                visible: text !== ""
                text: root.due
                font.pixelSize: Theme.caption
                font.weight: root.isOverdue ? Font.DemiBold : Font.Normal
                color: root.isOverdue ? Theme.red : Theme.amber
            }
            SmallFigure {
                symbol: "list.bullet.indent"
                text: root.subtasks
            }
            SmallFigure {
                symbol: "clock"
                text: root.time
            }
            LayoutRepeater {
                model: root.tags

                Label {
                    required property string modelData

                    text: "#" + modelData
                    font.pixelSize: Theme.caption
                    color: Theme.accent
                }
            }
        }
    }
}
