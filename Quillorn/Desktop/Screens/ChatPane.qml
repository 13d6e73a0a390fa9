import QtQuick
import QtQuick.Layouts
import QuillornStyle

/// The conversation with a model about a client or a project.
ColumnLayout {
    id: root

    property QtObject chat
    property var confirm

    spacing: 0

    RowLayout {
        Layout.fillWidth: true
        Layout.margins: 10
        Layout.bottomMargin: 0
        spacing: 6

        Item {
            Layout.fillWidth: true
        }
        Button {
            id: summary

            visible: root.chat?.isConfigured ?? false
            text: root.chat?.words.summaryButton ?? ""
            icon.name: "calendar"
            checkable: true
            checked: range.visible
            onClicked: range.visible ? range.close() : range.open()

            RangePicker {
                id: range

                x: parent.width - width
                y: parent.height + 4
                chat: root.chat
            }
        }
        ToolButton {
            visible: list.count > 0
            tip: root.chat?.words.clearButton ?? ""
            icon.name: "trash"
            onClicked: root.confirm.ask(root.chat.clearQuestion, () => root.chat.clear())
        }
    }
    Label {
        Layout.fillWidth: true
        Layout.margins: 12
        visible: text !== ""
        text: root.chat?.banner ?? ""
        color: Theme.amber
        wrapMode: Text.Wrap
    }
    ListView {
        id: list

        Layout.fillWidth: true
        Layout.fillHeight: true
        clip: true
        spacing: 18
        topMargin: 16
        bottomMargin: 16
        model: root.chat?.messages ?? null
        ScrollBar.vertical: ScrollBar {}
        onCountChanged: Qt.callLater(positionViewAtEnd)
        onContentHeightChanged: if (root.chat?.isStreaming)
            Qt.callLater(positionViewAtEnd)

        delegate: ChatBubble {
            width: ListView.view.width
            isCopied: root.chat?.copiedMessage === id
            words: root.chat?.words ?? ({})
            onCopy: root.chat.copyForMail(id, content)
        }
        footer: Label {
            leftPadding: 66
            topPadding: text ? 14 : 0
            height: text ? implicitHeight : 0
            text: root.chat?.status ?? ""
            color: Theme.secondaryText
        }

        ColumnLayout {
            anchors.centerIn: parent
            width: Math.min(parent.width - 64, 420)
            visible: list.count === 0
            spacing: 10

            EmptyState {
                Layout.fillWidth: true
                symbol: "sparkles"
                title: root.chat?.emptyTitle ?? ""
                action: root.chat?.isConfigured ? "" : root.chat?.words.settingsButton ?? ""
                onActed: {
                    root.chat.openSettings();
                    Desk.command("settings");
                }
            }
            LayoutRepeater {
                model: root.chat?.suggestions ?? []

                Button {
                    required property string modelData

                    Layout.alignment: Qt.AlignHCenter
                    text: modelData
                    onClicked: root.chat.sendSuggestion(modelData)
                }
            }
        }
    }
    RowLayout {
        Layout.fillWidth: true
        Layout.leftMargin: 28
        Layout.rightMargin: 28
        visible: (root.chat?.error ?? "") !== ""

        SymbolIcon {
            name: "exclamationmark.triangle.fill"
            color: Theme.red
        }
        Label {
            Layout.fillWidth: true
            text: root.chat?.error ?? ""
            color: Theme.red
            wrapMode: Text.Wrap
            maximumLineCount: 4
            elide: Text.ElideRight
            Accessible.role: Accessible.AlertMessage
        }
        ToolButton {
            tip: root.chat?.words.dismissButton ?? ""
            icon.name: "xmark"
            onClicked: root.chat.dismissError()
        }
    }
    Rectangle {
        Layout.fillWidth: true
        Layout.margins: 20
        Layout.leftMargin: 28
        Layout.rightMargin: 28
        implicitHeight: Math.min(Math.max(input.implicitHeight, 44), 140)
        radius: 22
        color: Theme.control
        border.color: input.activeFocus ? Theme.accent : Theme.edge
        border.width: input.activeFocus ? 2 : 1

        ScrollView {
            anchors.fill: parent
            anchors.leftMargin: 10
            anchors.rightMargin: 48

            TextArea {
                id: input

                topPadding: 13
                bottomPadding: 13
                placeholderText: root.chat?.prompt ?? ""
                text: root.chat?.inputText ?? ""
                background: null
                onTextChanged: if (root.chat && text !== root.chat.inputText)
                    root.chat.inputText = text
                Keys.onReturnPressed: event => {
                    if (event.modifiers & Qt.ShiftModifier)
                        event.accepted = false;
                    else if (root.chat.sendButton.isEnabled && !root.chat.isStreaming)
                        root.chat.send();
                }
            }
        }
        Button {
            anchors.right: parent.right
            anchors.rightMargin: 7
            anchors.bottom: parent.bottom
            anchors.bottomMargin: 7
            highlighted: true
            icon.name: root.chat?.sendButton.symbol ?? ""
            Accessible.name: root.chat?.sendButton.label ?? ""
            enabled: root.chat?.sendButton.isEnabled ?? false
            onClicked: root.chat.isStreaming ? root.chat.stop() : root.chat.send()
        }
    }
}
