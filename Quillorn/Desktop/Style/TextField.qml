import QtQuick
import QtQuick.Templates as T
import QuillornStyle

/// With `symbol` a symbol stands in front.
T.TextField {
    id: control

    property string symbol
    property bool isWrong: false

    implicitWidth: implicitBackgroundWidth
    implicitHeight: Theme.controlHeight
    leftPadding: symbol && !Theme.isMirrored ? 30 : 9
    rightPadding: symbol && Theme.isMirrored ? 30 : 9
    horizontalAlignment: TextInput.AlignLeft
    verticalAlignment: TextInput.AlignVCenter
    font.pixelSize: Theme.body
    color: enabled ? Theme.text : Theme.tertiaryText
    placeholderTextColor: Theme.tertiaryText
    selectionColor: Theme.fill
    selectedTextColor: Theme.fillText
    selectByMouse: true
    Accessible.name: placeholderText

    SymbolIcon {
        anchors.left: parent.left
        anchors.leftMargin: 9
        anchors.verticalCenter: parent.verticalCenter
        visible: control.symbol !== ""
        name: control.symbol
        color: Theme.secondaryText
        size: 14
    }
    Text {
        x: control.leftPadding
        width: control.width - control.leftPadding - control.rightPadding
        height: control.height
        horizontalAlignment: Text.AlignLeft
        verticalAlignment: Text.AlignVCenter
        visible: !control.length && !control.preeditText
        text: control.placeholderText
        textFormat: Text.PlainText
        font: control.font
        color: control.placeholderTextColor
        elide: Text.ElideRight
    }
    background: Rectangle {
        implicitWidth: 160
        radius: Theme.controlRadius
        color: Theme.control
        border.color: control.isWrong ? Theme.red : control.activeFocus ? Theme.accent : Theme.edge
        border.width: control.activeFocus ? 2 : 1
    }
}
