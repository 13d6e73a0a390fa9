import QtQuick
import QuillornStyle

/// A section, or one thing that can be selected or done. Of those there are many: what a row seldom shows is made then.
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
    /// What is dragged would go in here.
    property bool isTarget: false
    readonly property bool isSection: kind === 0
    readonly property bool isProject: kind === 4
    readonly property bool isGroup: kind === 3
    readonly property bool hasDot: isProject || kind === 5
    readonly property bool isBadge: key === "today"
    readonly property int inset: 6 + depth * 16

    signal picked
    signal menuWanted
    signal dragged(real position)
    signal dropped

    implicitHeight: Math.round((isSection ? 36 : 28) * Theme.textScale)
    Accessible.role: Accessible.TreeItem
    Accessible.name: countText ? title + ", " + countText : title
    Accessible.focusable: !isRenaming
    Accessible.selected: isSelected
    Accessible.onPressAction: picked()

    Rectangle {
        anchors.fill: parent
        radius: Theme.controlRadius
        color: root.isSection ? "transparent" : root.isSelected ? Theme.selected : hover.hovered ? Theme.hovered : "transparent"
        border.width: root.isFocused || root.isTarget ? 2 : root.isSelected && Theme.isHighContrast ? 1 : 0
        border.color: Theme.accent
    }
    HoverHandler {
        id: hover

        onHoveredChanged: {
            if (hovered && root.help) {
                root.ToolTip.delay = 900;
                root.ToolTip.show(root.help);
            } else if (root.help) {
                root.ToolTip.hide();
            }
        }
    }
    TapHandler {
        acceptedButtons: Qt.LeftButton | Qt.RightButton
        onTapped: (point, button) => button === Qt.RightButton ? root.menuWanted() : root.picked()
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
    SymbolIcon {
        anchors.left: root.isSection ? undefined : parent.left
        anchors.leftMargin: root.inset
        anchors.right: root.isSection ? parent.right : undefined
        anchors.rightMargin: 10
        anchors.verticalCenter: words.verticalCenter
        name: root.isSection || root.disclosure !== 0 ? root.disclosure === 2 ? "chevron.down" : "chevron.right" : ""
        color: Theme.secondaryText
        size: 10

        TapHandler {
            enabled: !root.isSection && root.disclosure !== 0
            margin: 8
            onTapped: root.sidebar.toggle(root.index)
        }
    }
    SymbolIcon {
        id: icon

        anchors.horizontalCenter: parent.left
        anchors.horizontalCenterOffset: root.inset + 24
        anchors.verticalCenter: parent.verticalCenter
        name: root.hasDot ? "circle.fill" : root.isSection ? "" : root.symbol
        color: root.tone || root.hasDot ? Theme.shade(root.tone) : root.isGroup || root.kind > 5 ? Theme.secondaryText : Theme.accent
        size: root.hasDot ? 8 : 16
        opacity: words.opacity
    }
    Label {
        id: words

        anchors.left: parent.left
        anchors.leftMargin: root.isSection ? root.inset : root.inset + (icon.name ? 38 : 16)
        anchors.right: count.left
        anchors.rightMargin: root.countText ? 6 : 0
        anchors.verticalCenter: parent.verticalCenter
        anchors.verticalCenterOffset: root.isSection ? 5 : 0
        visible: !root.isRenaming
        text: root.title
        font.pixelSize: root.isSection ? Theme.small : Theme.body
        font.weight: root.isSection || root.isSelected ? Font.DemiBold : Font.Normal
        color: root.isSection || root.kind > 5 ? Theme.secondaryText : Theme.text
        elide: Text.ElideRight
        opacity: drag.active ? 0.5 : 1
    }
    Loader {
        anchors.fill: words
        active: root.isRenaming
        sourceComponent: TextField {
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
    Loader {
        anchors.centerIn: count
        active: root.isBadge && root.countText !== ""
        sourceComponent: Rectangle {
            implicitWidth: Math.max(22, count.implicitWidth + 12)
            implicitHeight: 18
            radius: 9
            color: Theme.fill
        }
    }
    Label {
        id: count

        anchors.right: parent.right
        anchors.rightMargin: root.isSection ? 20 : root.isBadge ? Math.max(16, 21 - implicitWidth / 2) : 10
        anchors.verticalCenter: parent.verticalCenter
        text: root.countText
        font.pixelSize: root.isBadge ? Theme.small : Theme.caption
        font.weight: root.isBadge ? Font.DemiBold : Font.Normal
        color: root.isBadge ? Theme.fillText : Theme.tertiaryText
    }
}
