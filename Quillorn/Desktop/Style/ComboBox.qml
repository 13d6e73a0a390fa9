import QtQuick
import QtQuick.Templates as T
import QuillornStyle

T.ComboBox {
    id: control

    implicitWidth: Math.max(implicitContentWidth + leftPadding + rightPadding, 120)
    implicitHeight: Theme.controlHeight
    leftPadding: mirrored ? 28 : 10
    rightPadding: mirrored ? 10 : 28
    font.pixelSize: Theme.body
    opacity: enabled ? 1 : 0.5
    Accessible.onPressAction: popup.open()

    contentItem: Text {
        text: control.displayText
        textFormat: Text.PlainText
        font: control.font
        color: Theme.text
        elide: Text.ElideRight
        horizontalAlignment: Text.AlignLeft
        verticalAlignment: Text.AlignVCenter
    }
    indicator: SymbolIcon {
        x: control.mirrored ? 8 : control.width - width - 8
        anchors.verticalCenter: parent.verticalCenter
        name: "chevron.up.chevron.down"
        color: Theme.secondaryText
        size: 12
    }
    background: Rectangle {
        radius: Theme.controlRadius
        color: control.hovered ? Theme.hovered : Theme.control
        border.color: Theme.edge
    }
    delegate: ItemDelegate {
        required property int index
        required property var model

        width: ListView.view.width
        text: control.textRole ? (model[control.textRole] ?? model.modelData[control.textRole]) : model.modelData
        font.weight: control.currentIndex === index ? Font.DemiBold : Font.Normal
        highlighted: control.highlightedIndex === index
    }
    popup: Popup {
        y: control.height + 2
        width: Math.max(control.width, 140)
        height: Math.min(contentItem.implicitHeight + 8, 320)
        padding: 4
        contentItem: ListView {
            clip: true
            implicitHeight: contentHeight
            model: control.delegateModel
            currentIndex: control.highlightedIndex
            ScrollBar.vertical: ScrollBar {}
        }
    }

    FocusFrame {}
}
