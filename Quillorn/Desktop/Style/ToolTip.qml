import QtQuick
import QtQuick.Templates as T

T.ToolTip {
    id: control

    x: parent ? (parent.width - implicitWidth) / 2 : 0
    y: (parent ? parent.height : 0) + 4
    implicitWidth: contentItem.implicitWidth + leftPadding + rightPadding
    implicitHeight: contentItem.implicitHeight + topPadding + bottomPadding
    horizontalPadding: 8
    verticalPadding: 5
    margins: 6
    closePolicy: T.Popup.CloseOnEscape | T.Popup.CloseOnPressOutsideParent | T.Popup.CloseOnReleaseOutsideParent
    contentItem: Text {
        text: control.text
        textFormat: Text.PlainText
        font.pixelSize: Theme.caption
        color: Theme.window
    }
    background: Rectangle {
        radius: 5
        color: Theme.inverse
    }
}
