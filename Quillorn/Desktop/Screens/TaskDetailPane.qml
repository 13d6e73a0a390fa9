import QtQuick
import QtQuick.Layouts
import QuillornStyle

/// All about one task, edited in place.
Item {
    id: root

    property QtObject task
    property var statuses: []
    property var priorities: []
    property var confirm

    signal opened(string kind, string record)
    signal entryEdited(string entry)
    signal closed

    ColumnLayout {
        anchors.fill: parent
        spacing: 0
        visible: !(root.task?.isGone ?? true)

        RowLayout {
            Layout.fillWidth: true
            Layout.leftMargin: 16
            Layout.rightMargin: 10
            implicitHeight: 52
            Layout.preferredHeight: 52
            spacing: 4

            PathBar {
                Layout.fillWidth: true
                path: root.task?.path ?? []
                onOpened: (kind, record) => root.opened(kind, record)
            }
            ToolButton {
                tip: root.task?.words.timerButton ?? ""
                icon.name: root.task?.isTiming ? "stop.fill" : "play.fill"
                onClicked: root.task.toggleTimer()
            }
            ToolButton {
                id: copy

                tip: root.task?.texts.copyButton ?? ""
                icon.name: copied.running ? "checkmark" : "doc.on.clipboard"
                onClicked: {
                    root.task.copyForAgent();
                    copied.restart();
                }

                Timer {
                    id: copied

                    interval: 2000
                }
            }
            ToolButton {
                tip: "Delete"
                icon.name: "trash"
                onClicked: root.confirm.ask(root.task.deletion(), () => root.task.remove())
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
        ScrollView {
            id: scroll

            Layout.fillWidth: true
            Layout.fillHeight: true
            contentWidth: availableWidth

            ColumnLayout {
                width: scroll.availableWidth
                spacing: 10

                RowLayout {
                    Layout.fillWidth: true
                    Layout.margins: 20
                    Layout.bottomMargin: 0
                    spacing: 10

                    AbstractChip {
                        Layout.alignment: Qt.AlignTop
                        implicitWidth: 24
                        implicitHeight: 30
                        Accessible.name: root.task?.words.completionButton ?? ""
                        onClicked: root.task.toggleCompleted()
                        contentItem: Item {
                            SymbolIcon {
                                anchors.centerIn: parent
                                name: root.task?.words.isCompleted ? "checkmark.circle.fill" : "circle"
                                color: root.task?.words.isCompleted ? Theme.accent : root.task?.words.isOverdue ? Theme.red : Theme.edge
                                size: 20
                            }
                        }
                        background: FocusFrame {}
                    }
                    PlainEditor {
                        Layout.fillWidth: true
                        font.pixelSize: Theme.title
                        font.weight: Font.DemiBold
                        isOneLine: true
                        placeholderText: "Title"
                        stored: root.task?.fields.title ?? ""
                        onTyped: text => root.task.type("title", text)
                        onFinished: root.task.leave("title")
                        onReverted: root.task.revert("title")
                    }
                }
                ChangedElsewhere {
                    Layout.leftMargin: 20
                    visible: text !== ""
                    text: root.task?.warning ?? ""
                    onReverted: {
                        root.task.revert("title");
                        root.task.revert("description");
                    }
                }
                Label {
                    Layout.fillWidth: true
                    Layout.leftMargin: 20
                    Layout.rightMargin: 20
                    visible: text !== ""
                    text: root.task?.error ?? ""
                    color: Theme.red
                    wrapMode: Text.Wrap
                    Accessible.role: Accessible.AlertMessage
                }
                TaskChips {
                    Layout.fillWidth: true
                    Layout.leftMargin: 20
                    Layout.rightMargin: 20
                    task: root.task
                    statuses: root.statuses
                    priorities: root.priorities
                }
                TaskFacts {
                    Layout.fillWidth: true
                    Layout.leftMargin: 20
                    Layout.rightMargin: 20
                    task: root.task
                }
                PlainEditor {
                    Layout.fillWidth: true
                    Layout.leftMargin: 16
                    Layout.rightMargin: 16
                    placeholderText: "Description"
                    stored: root.task?.fields.description ?? ""
                    onTyped: text => root.task.type("description", text)
                    onFinished: root.task.leave("description")
                    onReverted: root.task.revert("description")
                }
                TaskSubtasks {
                    Layout.fillWidth: true
                    task: root.task
                    onOpened: (kind, record) => root.opened(kind, record)
                }
                TaskTimes {
                    Layout.fillWidth: true
                    task: root.task
                    onEntryEdited: entry => root.entryEdited(entry)
                }
                Label {
                    Layout.leftMargin: 20
                    Layout.topMargin: 8
                    text: root.task?.texts.commentsTitle ?? ""
                    font.weight: Font.DemiBold
                    Accessible.role: Accessible.Heading
                }
                LayoutRepeater {
                    model: root.task?.comments ?? null

                    CommentRow {
                        Layout.fillWidth: true
                        Layout.leftMargin: 20
                        Layout.rightMargin: 20
                        onDeleteWanted: root.confirm.ask(root.task.deletionOfComment(recordId), () => root.task.removeComment(recordId))
                    }
                }
                Item {
                    implicitHeight: 12
                }
            }
        }
        Rectangle {
            Layout.fillWidth: true
            implicitHeight: 1
            color: Theme.line
        }
        TextField {
            Layout.fillWidth: true
            Layout.margins: 12
            placeholderText: root.task?.texts.commentPrompt ?? ""
            onAccepted: {
                root.task.addComment(text);
                clear();
            }
        }
    }
    EmptyState {
        anchors.centerIn: parent
        width: Math.min(parent.width - 48, 360)
        visible: root.task?.isGone ?? false
        symbol: "trash"
        title: root.task?.texts.gone ?? ""
    }
}
