import QtQuick

/// The ground of what stands over the window, with a shadow of rings, for the software renderer knows no blur.
Rectangle {
    radius: Theme.rowRadius
    color: Theme.surface
    border.color: Theme.isHighContrast ? Theme.text : Theme.isDark ? "#45464F" : "#D5D5DC"

    Repeater {
        model: Theme.isHighContrast ? 0 : 5

        Rectangle {
            required property int index

            z: -1
            anchors.fill: parent
            anchors.margins: -index - 1
            anchors.topMargin: -index + 1
            radius: parent.radius + index + 1
            color: "transparent"
            border.color: Qt.rgba(0, 0, 0, (Theme.isDark ? 0.22 : 0.07) * (5 - index) / 5)
        }
    }
}
