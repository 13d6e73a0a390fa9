import QtQuick
import QtQuick.Templates as T

T.TextArea {
    id: control

    implicitWidth: Math.max(contentWidth + leftPadding + rightPadding, 160)
    implicitHeight: Math.max(contentHeight + topPadding + bottomPadding, Theme.controlHeight * 2)
    padding: 9
    font.pixelSize: Theme.body
    color: enabled ? Theme.text : Theme.tertiaryText
    placeholderTextColor: Theme.tertiaryText
    selectionColor: Theme.fill
    selectedTextColor: Theme.fillText
    selectByMouse: true
    textFormat: TextEdit.PlainText
    wrapMode: TextEdit.Wrap
    horizontalAlignment: TextEdit.AlignLeft
    Accessible.name: placeholderText
    // Tab leads to the next control here, as in every other.
    Keys.onTabPressed: nextItemInFocusChain(true).forceActiveFocus(Qt.TabFocusReason)
    Keys.onBacktabPressed: nextItemInFocusChain(false).forceActiveFocus(Qt.BacktabFocusReason)

    Text {
        x: control.leftPadding
        y: control.topPadding
        width: control.width - control.leftPadding - control.rightPadding
        visible: !control.length && !control.preeditText
        text: control.placeholderText
        textFormat: Text.PlainText
        font: control.font
        color: control.placeholderTextColor
        horizontalAlignment: Text.AlignLeft
        wrapMode: Text.Wrap
    }
    background: Rectangle {
        radius: Theme.controlRadius
        color: Theme.control
        border.color: control.activeFocus ? Theme.accent : Theme.edge
        border.width: control.activeFocus ? 2 : 1
    }
}
