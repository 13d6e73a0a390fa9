import QtQuick
import QuillornStyle

/// What the mouse carries over the window: a task, or those that are selected, towards what takes them.
Rectangle {
    id: root

    property string task
    property string text
    readonly property int distance: 12

    /// The task is carried to that place of the item.
    function carry(item, point, newTask, newText) {
        const place = item.mapToItem(parent, point.x, point.y);
        x = place.x + distance;
        y = place.y + distance;
        task = newTask;
        text = newText;
        Drag.active = true;
    }
    function drop() {
        Drag.drop();
    }

    visible: Drag.active
    z: 100
    implicitWidth: Math.min(label.implicitWidth + 24, 280)
    implicitHeight: Math.round(30 * Theme.textScale)
    radius: Theme.controlRadius
    color: Theme.fill
    opacity: 0.92
    Drag.keys: ["task"]
    Drag.hotSpot: Qt.point(-distance, -distance)

    Label {
        id: label

        anchors.fill: parent
        anchors.leftMargin: 12
        anchors.rightMargin: 12
        verticalAlignment: Text.AlignVCenter
        text: root.text
        color: Theme.fillText
        elide: Text.ElideRight
    }
}
