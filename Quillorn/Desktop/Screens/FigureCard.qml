import QtQuick
import QtQuick.Layouts
import QuillornStyle

/// One figure with its label and a line below.
Rectangle {
    id: root

    property string label
    property string figure
    property string note
    property bool isHero: false

    implicitWidth: Math.max(words.implicitWidth + 28, 120)
    implicitHeight: words.implicitHeight + 24
    radius: Theme.cardRadius
    color: isHero ? Theme.fill : Theme.card
    border.color: isHero ? Theme.fill : Theme.line
    Accessible.role: Accessible.StaticText
    Accessible.name: label + " " + figure + " " + note

    ColumnLayout {
        id: words

        anchors.fill: parent
        anchors.margins: 12
        anchors.leftMargin: 14
        spacing: 3

        Label {
            Layout.fillWidth: true
            text: root.label
            font.pixelSize: Theme.caption
            color: root.isHero ? Theme.fillText : Theme.secondaryText
            elide: Text.ElideRight
        }
        Label {
            Layout.fillWidth: true
            text: root.figure
            font.pixelSize: Theme.figure
            font.weight: Font.DemiBold
            color: root.isHero ? Theme.fillText : Theme.text
            elide: Text.ElideRight
        }
        Label {
            Layout.fillWidth: true
            text: root.note
            visible: text !== ""
            font.pixelSize: Theme.caption
            color: root.isHero ? Theme.fillText : Theme.secondaryText
            elide: Text.ElideRight
        }
        Item {
            Layout.fillHeight: true
        }
    }
}
