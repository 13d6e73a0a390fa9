import QtQuick
import QtQuick.Layouts
import QtQuick.Controls
import QuillornStyle

Item {
    id: root

    required property int index
    required property int kind
    required property string key
    required property string recordId
    required property int depth
    required property int disclosure
    required property string title
    required property string symbol
    required property string tone
    required property string countText
    required property string help
    required property bool isRenaming
    required property bool takesTasks
    property QtObject sidebar
    property bool isSelected: false
    property bool isFocused: false
    /// Where what is dragged would go: 0 for nowhere, 1 in here, 2 above, 3 below.
    property int dropPlace: 0
    readonly property bool isSection: kind === 0
    readonly property bool isProject: kind === 4
    readonly property bool isGroup: kind === 3

    signal picked
    signal menuWanted
    signal dragged(real position)
    signal dropped
    signal tasksDropped(string task)

    implicitHeight: Math.round((isSection ? 36 : 28) * Theme.textScale)
    Accessible.role: Accessible.TreeItem
    Accessible.name: countText ? title + ", " + countText : title
    Accessible.focusable: !isRenaming
    Accessible.selected: isSelected
    Accessible.onPressAction: picked()

    Rectangle {
        anchors.fill: parent
        visible: !root.isSection
        radius: Theme.controlRadius
        color: root.isSelected ? Theme.selected : hover.hovered ? Theme.hovered : "transparent"
        border.width: root.isFocused || root.dropPlace === 1 || tasks.containsDrag ? 2 : root.isSelected && Theme.isHighContrast ? 1 : 0
        border.color: Theme.accent
    }
    Rectangle {
        visible: root.dropPlace > 1
        width: parent.width
        height: 2
        y: root.dropPlace === 2 ? -1 : parent.height - 1
        color: Theme.accent
    }
    DropArea {
        id: tasks

        anchors.fill: parent
        enabled: root.takesTasks
        keys: ["task"]
        onDropped: drop => root.tasksDropped(drop.source.task)
    }
    Rectangle {
        anchors.fill: parent
        visible: root.isSection && root.isFocused
        radius: Theme.controlRadius
        color: "transparent"
        border.width: 2
        border.color: Theme.accent
    }
    HoverHandler {
        id: hover
    }
    TapHandler {
        onTapped: root.picked()
    }
    TapHandler {
        acceptedButtons: Qt.RightButton
        onTapped: root.menuWanted()
    }
    DragHandler {
        id: drag

        enabled: root.isProject || root.isGroup
        target: null
        acceptedDevices: PointerDevice.Mouse
        onCentroidChanged: if (active)
            root.dragged(centroid.position.y)
        onActiveChanged: if (!active)
            root.dropped()
    }
    RowLayout {
        anchors.fill: parent
        anchors.leftMargin: 6 + root.depth * 16
        anchors.rightMargin: 10
        anchors.topMargin: root.isSection ? 10 : 0
        spacing: 6
        opacity: drag.active ? 0.5 : 1

        Item {
            visible: !root.isSection
            implicitWidth: 10
            Layout.fillHeight: true

            SymbolIcon {
                anchors.centerIn: parent
                visible: root.disclosure !== 0
                name: root.disclosure === 2 ? "chevron.down" : "chevron.right"
                color: Theme.secondaryText
                size: 10
            }
            TapHandler {
                enabled: root.disclosure !== 0
                onTapped: root.sidebar.toggle(root.index)
            }
        }
        Rectangle {
            visible: root.isProject || root.kind === 5
            Layout.leftMargin: 4
            Layout.rightMargin: 4
            implicitWidth: 8
            implicitHeight: 8
            radius: 4
            color: Theme.shade(root.tone)
        }
        SymbolIcon {
            visible: !root.isProject && root.kind !== 5 && !root.isSection && root.symbol !== ""
            name: visible ? root.symbol : ""
            color: root.tone ? Theme.shade(root.tone) : root.isGroup || root.kind > 5 ? Theme.secondaryText : Theme.accent
            size: 16
        }
        Loader {
            Layout.fillWidth: true
            active: root.isRenaming
            visible: active
            sourceComponent: TextField {
                implicitHeight: 24
                placeholderText: "Group name"
                Component.onCompleted: {
                    text = root.title;
                    forceActiveFocus();
                    selectAll();
                }
                onAccepted: root.sidebar.finishRenaming(text)
                Keys.onEscapePressed: root.sidebar.cancelRenaming()
                onActiveFocusChanged: if (!activeFocus && root.isRenaming)
                    root.sidebar.finishRenaming(text)
            }
        }
        Label {
            Layout.fillWidth: true
            visible: !root.isRenaming
            text: root.title
            font.pixelSize: root.isSection ? Theme.small : Theme.body
            font.weight: root.isSection || root.isSelected ? Font.DemiBold : Font.Normal
            color: root.isSection || root.kind > 5 ? Theme.secondaryText : Theme.text
            elide: Text.ElideRight
        }
        Loader {
            active: root.countText !== "" && root.key === "today"
            visible: active
            sourceComponent: Rectangle {
                implicitWidth: Math.max(22, count.implicitWidth + 12)
                implicitHeight: 18
                radius: 9
                color: Theme.fill

                Label {
                    id: count

                    anchors.centerIn: parent
                    text: root.countText
                    font.pixelSize: Theme.small
                    font.weight: Font.DemiBold
                    color: Theme.fillText
                }
            }
        }
        Label {
            visible: root.countText !== "" && root.key !== "today"
            text: root.countText
            font.pixelSize: Theme.caption
            color: Theme.tertiaryText
        }
        SymbolIcon {
            visible: root.isSection
            name: root.disclosure === 2 ? "chevron.down" : "chevron.right"
            color: Theme.secondaryText
            size: 10
        }
    }
    ToolTip.text: help
    ToolTip.visible: help !== "" && hover.hovered && !drag.active
    ToolTip.delay: 900
}
