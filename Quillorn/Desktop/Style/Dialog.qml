import QtQuick
import QtQuick.Templates as T

T.Dialog {
    id: control

    anchors.centerIn: T.Overlay.overlay
    implicitWidth: Math.max(contentWidth + leftPadding + rightPadding, implicitHeaderWidth, implicitFooterWidth)
    implicitHeight: contentHeight + topPadding + bottomPadding + implicitHeaderHeight + implicitFooterHeight
    padding: 20
    topPadding: 10
    margins: 16
    modal: true
    focus: true
    header: Text {
        visible: control.title !== ""
        text: control.title
        textFormat: Text.PlainText
        font.family: control.font.family
        font.pixelSize: Theme.heading
        font.weight: Font.DemiBold
        color: Theme.text
        leftPadding: 20
        rightPadding: 20
        topPadding: 18
        elide: Text.ElideRight
        Accessible.role: Accessible.Heading
        Accessible.name: text
    }
    background: Surface {
        radius: 12
    }
    T.Overlay.modal: Rectangle {
        color: Theme.isDark ? "#99000000" : "#55000000"
    }
}
