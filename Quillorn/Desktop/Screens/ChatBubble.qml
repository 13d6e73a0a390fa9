import QtQuick
import QtQuick.Layouts
import QuillornStyle

/// One message: the user's in a bubble as it was typed, the model's as Markdown beside its mark.
Item {
    id: root

    required property string id
    required property bool isUser
    required property string content
    property bool isCopied: false
    property var words: ({})

    signal copy

    implicitHeight: isUser ? bubble.height : answer.implicitHeight

    Rectangle {
        id: bubble

        anchors.right: parent.right
        anchors.rightMargin: 28
        visible: root.isUser
        width: Math.min(typed.implicitWidth + 28, root.width * 0.75)
        height: typed.implicitHeight + 18
        radius: 14
        color: Theme.fill

        Label {
            id: typed

            anchors.fill: parent
            anchors.leftMargin: 14
            anchors.rightMargin: 14
            verticalAlignment: Text.AlignVCenter
            text: root.isUser ? root.content : ""
            color: Theme.fillText
            wrapMode: Text.Wrap
        }
    }
    RowLayout {
        id: answer

        anchors.left: parent.left
        anchors.right: parent.right
        anchors.leftMargin: 28
        anchors.rightMargin: 28
        visible: !root.isUser && root.content !== ""
        spacing: 12

        Rectangle {
            Layout.alignment: Qt.AlignTop
            implicitWidth: 26
            implicitHeight: 26
            radius: 13
            color: Theme.tint(Theme.accent)

            SymbolIcon {
                anchors.centerIn: parent
                name: "sparkles"
                color: Theme.accent
                size: 14
            }
        }
        ColumnLayout {
            Layout.fillWidth: true
            spacing: 4

            MarkdownText {
                Layout.fillWidth: true
                Layout.topMargin: 4
                source: root.isUser ? "" : root.content
                label: root.words.answerLabel ?? ""
            }
            Button {
                Layout.leftMargin: -7
                flat: true
                text: (root.isCopied ? root.words.copiedLabel : root.words.copyButton) ?? ""
                icon.name: root.isCopied ? "checkmark" : "doc.on.doc"
                tone: Theme.secondaryText
                onClicked: root.copy()
            }
        }
    }
}
