import QtQuick
import QtQuick.Layouts
import QuillornStyle

/// Says at the foot of the window what was done, and offers to take it back, for six seconds.
Rectangle {
    id: root

    property string text
    property string action

    signal acted

    function show(newText, newAction) {
        text = newText;
        action = newAction ?? "";
        visible = true;
        clock.restart();
    }

    visible: false
    implicitWidth: Math.min(row.implicitWidth + 28, (parent?.width ?? 600) - 40)
    implicitHeight: 40
    radius: Theme.rowRadius
    color: Theme.inverse
    Accessible.role: Accessible.AlertMessage
    Accessible.name: text

    Timer {
        id: clock

        interval: 6000
        onTriggered: root.visible = false
    }
    RowLayout {
        id: row

        anchors.fill: parent
        anchors.leftMargin: 14
        anchors.rightMargin: 14
        spacing: 12

        Label {
            Layout.fillWidth: true
            text: root.text
            color: Theme.window
            elide: Text.ElideRight
        }
        Button {
            visible: root.action !== ""
            text: root.action
            flat: true
            tone: Theme.inverseAccent
            onClicked: {
                root.visible = false;
                root.acted();
            }
        }
    }
}
