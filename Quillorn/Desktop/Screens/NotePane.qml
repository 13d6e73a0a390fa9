import QtQuick
import QtQuick.Layouts
import QuillornStyle

/// A note, as plain text or as the Markdown that it is.
Item {
    id: root

    property QtObject note
    property var confirm

    signal opened(string kind, string record)
    signal closed

    ColumnLayout {
        anchors.fill: parent
        spacing: 0
        visible: !(root.note?.isGone ?? true)

        RowLayout {
            Layout.fillWidth: true
            Layout.preferredHeight: 52
            Layout.leftMargin: 16
            Layout.rightMargin: 10
            spacing: 4

            PathBar {
                Layout.fillWidth: true
                path: root.note?.path ?? []
                onOpened: (kind, record) => root.opened(kind, record)
            }
            Switch {
                text: root.note?.texts.previewLabel ?? ""
                checked: root.note?.isPreview ?? false
                onToggled: root.note.isPreview = checked
            }
            ToolButton {
                tip: root.note?.pinButton ?? ""
                icon.name: "flag.fill"
                tone: root.note?.isPinned ? Theme.amber : Theme.secondaryText
                onClicked: root.note.togglePin()
            }
            ToolButton {
                tip: "Delete"
                icon.name: "trash"
                onClicked: root.confirm.ask(root.note.deletion(), () => root.note.remove())
            }
            ToolButton {
                tip: "Close"
                icon.name: "xmark"
                onClicked: root.closed()
            }
        }
        Rectangle {
            Layout.fillWidth: true
            implicitHeight: 1
            color: Theme.line
        }
        ChangedElsewhere {
            Layout.margins: 10
            visible: text !== ""
            text: root.note?.warning ?? ""
            onReverted: root.note.revert()
        }
        PlainEditor {
            Layout.fillWidth: true
            Layout.margins: 14
            Layout.bottomMargin: 0
            isOneLine: true
            font.pixelSize: Theme.title
            font.weight: Font.DemiBold
            placeholderText: root.note?.texts.titlePrompt ?? ""
            stored: root.note?.title ?? ""
            onTyped: text => root.note.typeTitle(text)
            onFinished: root.note?.leave()
            onReverted: root.note.revert()
        }
        Label {
            Layout.leftMargin: 18
            Layout.topMargin: 2
            text: root.note?.error || (root.note?.edited ?? "")
            font.pixelSize: Theme.small
            color: root.note?.error ? Theme.red : Theme.secondaryText
        }
        ScrollView {
            id: scroll

            Layout.fillWidth: true
            Layout.fillHeight: true
            Layout.margins: 14
            contentWidth: availableWidth

            PlainEditor {
                width: scroll.availableWidth
                height: Math.max(implicitHeight, scroll.height)
                visible: !(root.note?.isPreview ?? false)
                placeholderText: root.note?.texts.contentPrompt ?? ""
                stored: root.note?.content ?? ""
                onTyped: text => root.note.typeContent(text)
                onFinished: root.note?.leave()
                onReverted: root.note.revert()
            }
            MarkdownText {
                width: scroll.availableWidth
                padding: 4
                visible: root.note?.isPreview ?? false
                source: visible ? root.note.content : ""
                label: root.note?.title || (root.note?.texts.contentPrompt ?? "")
            }
        }
    }
    EmptyState {
        anchors.centerIn: parent
        width: Math.min(parent.width - 48, 360)
        visible: root.note?.isGone ?? false
        symbol: "trash"
        title: root.note?.texts.gone ?? ""
    }
}
