import QtQuick
import QtQuick.Layouts
import QuillornStyle

/// A task, the head of a section, or the row that folds done tasks.
Item {
    id: root

    required property int index
    required property int kind
    required property string taskId
    required property int depth
    required property int disclosure
    required property string title
    required property string symbol
    required property string mark
    required property string statusLabel
    required property string projectName
    required property string tone
    required property string dueText
    required property string dueTimeText
    required property string subtasksText
    required property string countText
    required property string timeText
    required property bool isCompleted
    required property bool isOverdue
    required property var tags

    property bool isCurrent: false
    property bool isShown: false
    property bool isFocused: false
    /// Takes what is dragged over the window.
    property Item carrier
    readonly property bool isTask: kind === 2
    readonly property bool isHeading: kind === 0
    readonly property bool hasSecondLine: projectName !== "" || subtasksText !== "" || timeText !== "" || countText !== "" || tags.length > 0

    signal picked(int modifiers)
    signal toggled
    signal disclosed
    signal menuWanted
    signal carried(Item row, point place)

    implicitHeight: Math.round((isTask ? (hasSecondLine ? 50 : 34) : kind === 0 ? 34 : 32) * Theme.textScale)
    Accessible.role: isTask ? Accessible.CheckBox : kind === 0 ? Accessible.Heading : Accessible.Button
    Accessible.name: isTask ? [title, statusLabel, dueText, projectName].filter(word => word).join(", ") : title
    Accessible.checkable: isTask
    Accessible.checked: isCompleted
    Accessible.focusable: !isHeading
    Accessible.onPressAction: kind === 1 ? disclosed() : isTask ? picked(0) : {}
    Accessible.onToggleAction: toggled()

    Late {
        anchors.fill: parent
        wanted: root.isHeading
        visible: wanted
        sourceComponent: RowLayout {
            anchors.fill: parent
            anchors.leftMargin: 14
            anchors.topMargin: 10
            spacing: 6

            MarkIcon {
                mark: root.mark
                size: Theme.caption + 3
            }
            Rectangle {
                visible: root.tone !== ""
                implicitWidth: 8
                implicitHeight: 8
                radius: 4
                color: Theme.shade(root.tone)
            }
            Label {
                text: root.title
                font.pixelSize: Theme.caption
                font.weight: Font.DemiBold
                color: root.isOverdue ? Theme.red : Theme.secondaryText
                elide: Text.ElideRight
            }
            Label {
                Layout.fillWidth: true
                text: root.countText
                font.pixelSize: Theme.caption
                color: Theme.tertiaryText
            }
        }
    }
    Late {
        anchors.verticalCenter: parent.verticalCenter
        x: 6
        wanted: root.kind === 1
        visible: wanted
        sourceComponent: Button {
            flat: true
            focusPolicy: Qt.NoFocus
            Accessible.ignored: true // the row itself is the button
            text: root.title
            icon.name: root.disclosure === 2 ? "chevron.down" : "chevron.right"
            tone: Theme.secondaryText
            onClicked: root.disclosed()
        }
    }
    Rectangle {
        visible: root.isTask
        anchors.fill: parent
        anchors.topMargin: 1
        anchors.bottomMargin: 1
        radius: Theme.rowRadius
        color: root.isShown ? Theme.selected : hover.hovered ? Theme.hovered : "transparent"
        border.width: root.isFocused ? 2 : root.isShown && Theme.isHighContrast ? 1 : 0
        border.color: Theme.accent
    }
    FocusFrame {
        anchors.margins: 0
        visible: root.isFocused && root.kind === 1
    }
    HoverHandler {
        id: hover

        enabled: root.isTask
    }
    TapHandler {
        enabled: root.isTask
        acceptedButtons: Qt.LeftButton
        onTapped: eventPoint => root.picked(point.modifiers)
    }
    DragHandler {
        target: null
        enabled: root.isTask && root.carrier !== null
        acceptedDevices: PointerDevice.Mouse
        onCentroidChanged: if (active)
            root.carried(root, centroid.position)
        onActiveChanged: if (!active)
            root.carrier.drop()
    }
    TapHandler {
        enabled: root.isTask
        acceptedButtons: Qt.RightButton
        onTapped: root.menuWanted()
    }
    Item {
        visible: root.isTask
        anchors.fill: parent
        anchors.leftMargin: 10 + root.depth * 24
        anchors.rightMargin: 12

        SymbolIcon {
            anchors.horizontalCenter: parent.left
            anchors.horizontalCenterOffset: 9
            anchors.verticalCenter: parent.verticalCenter
            name: root.disclosure === 0 ? "" : root.disclosure === 2 ? "chevron.down" : "chevron.right"
            color: Theme.secondaryText
            size: 11

            TapHandler {
                enabled: root.disclosure !== 0
                margin: 4
                onTapped: root.disclosed()
            }
        }
        SymbolIcon {
            anchors.horizontalCenter: parent.left
            anchors.horizontalCenterOffset: 33
            anchors.verticalCenter: parent.verticalCenter
            name: root.isCompleted ? "checkmark.circle.fill" : "circle"
            color: root.isCompleted ? Theme.accent : root.isOverdue ? Theme.red : Theme.edge
            size: 18

            TapHandler {
                margin: 6
                onTapped: root.toggled()
            }
        }
        Column {
            anchors.left: parent.left
            anchors.leftMargin: 54
            anchors.right: due.left
            anchors.rightMargin: 8
            anchors.verticalCenter: parent.verticalCenter
            spacing: 2

            Label {
                width: parent.width
                text: root.title
                font.weight: Font.Medium
                font.strikeout: root.isCompleted
                color: root.isCompleted ? Theme.tertiaryText : Theme.text
                elide: Text.ElideRight
            }
            Row {
                visible: root.hasSecondLine
                width: parent.width
                spacing: 10
                clip: true

                Row {
                    visible: root.projectName !== ""
                    spacing: 5

                    Rectangle {
                        anchors.verticalCenter: parent.verticalCenter
                        width: 8
                        height: 8
                        radius: 4
                        color: Theme.shade(root.tone)
                    }
                    Label {
                        text: root.projectName
                        font.pixelSize: Theme.caption
                        color: Theme.secondaryText
                    }
                }
                Late {
                    wanted: root.isTask && root.subtasksText !== ""
                    visible: wanted
                    sourceComponent: SmallFigure {
                        symbol: "list.bullet.indent"
                        text: root.subtasksText
                    }
                }
                Late {
                    wanted: root.isTask && root.countText !== ""
                    visible: wanted
                    sourceComponent: SmallFigure {
                        symbol: "bubble.left"
                        text: root.countText
                    }
                }
                Late {
                    wanted: root.timeText !== ""
                    visible: wanted
                    sourceComponent: SmallFigure {
                        symbol: "clock"
                        text: root.timeText
                    }
                }
                Label {
                    width: Math.max(0, Math.min(implicitWidth, parent.width - x))
                    visible: text !== ""
                    elide: Text.ElideRight
                    text: root.tags.map(tag => "#" + tag.name).join("   ")
                    font.pixelSize: Theme.caption
                    color: Theme.accent
                }
            }
        }
        Label {
            id: due

            anchors.right: time.left
            anchors.rightMargin: root.dueTimeText ? 6 : 0
            anchors.verticalCenter: parent.verticalCenter
            text: root.dueText
            font.weight: root.isOverdue ? Font.DemiBold : Font.Normal
            color: root.isOverdue ? Theme.red : root.isCompleted ? Theme.tertiaryText : Theme.amber
        }
        Label {
            id: time

            anchors.right: mark.left
            anchors.rightMargin: mark.visible ? 10 : 0
            anchors.verticalCenter: parent.verticalCenter
            text: root.dueTimeText
            color: due.color
        }
        MarkIcon {
            id: mark

            anchors.right: parent.right
            anchors.verticalCenter: parent.verticalCenter
            width: visible ? implicitWidth : 0
            mark: root.isTask ? root.mark : ""
            size: Theme.caption + 3
        }
    }
}
