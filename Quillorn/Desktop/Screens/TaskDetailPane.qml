import QtQuick
import QtQuick.Layouts
import QtQuick.Controls
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
                tip: root.task?.isTiming ? "Stop timer" : "Start timer"
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
                        Accessible.name: root.task?.words.isCompleted ? "Reopen" : "Complete"
                        onClicked: root.task.toggleCompleted()
                        contentItem: Item {
                            SymbolIcon {
                                anchors.centerIn: parent
                                name: root.task?.words.isCompleted ? "checkmark.circle.fill" : "circle"
                                color: root.task?.words.isCompleted ? Theme.fill : root.task?.words.isOverdue ? Theme.red : Theme.edge
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
                Flow {
                    Layout.fillWidth: true
                    Layout.leftMargin: 20
                    Layout.rightMargin: 20
                    spacing: 6

                    MenuChip {
                        symbol: root.task?.words.statusSymbol ?? ""
                        text: root.task?.words.status ?? ""
                        tone: Theme.amber
                        choices: root.statuses
                        onChosen: index => root.task.setStatus(index)
                    }
                    MenuChip {
                        text: root.task ? root.task.words.priority : ""
                        symbol: "flag.fill"
                        tone: Theme.red
                        choices: root.priorities
                        onChosen: index => root.task.setPriority(index)
                    }
                    Repeater {
                        model: root.task?.tags ?? null

                        Chip {
                            required property string recordId
                            required property string name

                            text: "#" + name
                            tone: Theme.accent
                            onClicked: root.task.toggleTag(recordId)
                        }
                    }
                    MenuChip {
                        symbol: "tag"
                        text: "Tag"
                        tone: Theme.secondaryText
                        records: root.task ? root.task.tagChoices() : []
                        onOpenedMenu: records = root.task.tagChoices()
                        onRecordChosen: record => root.task.toggleTag(record)
                    }
                }
                GridLayout {
                    Layout.fillWidth: true
                    Layout.leftMargin: 20
                    Layout.rightMargin: 20
                    columns: 2
                    columnSpacing: 14
                    rowSpacing: 4

                    FieldLabel {
                        symbol: "calendar"
                        text: "Due"
                    }
                    TextField {
                        id: due

                        readonly property string stored: root.task?.words.due ?? ""

                        Layout.fillWidth: true
                        Layout.maximumWidth: 240
                        placeholderText: "None"
                        text: stored
                        onStoredChanged: if (!activeFocus)
                            text = stored
                        color: root.task?.words.isOverdue ? Theme.red : Theme.text
                        onEditingFinished: {
                            if (text === stored)
                                return;
                            isWrong = !root.task.setDue(text);
                            if (!isWrong)
                                text = Qt.binding(() => stored);
                        }
                        Keys.onEscapePressed: {
                            isWrong = false;
                            text = stored;
                        }
                        Accessible.name: "Due"
                    }
                    FieldLabel {
                        symbol: "folder"
                        text: "Project"
                    }
                    MenuChip {
                        readonly property var step: (root.task?.path ?? []).filter(step => step.kind === "project")[0]

                        text: step ? step.name : "None"
                        tone: Theme.text
                        onOpenedMenu: records = [{
                                "id": "",
                                "name": "None"
                            }].concat(root.task.projectChoices())
                        onRecordChosen: record => root.task.move(record)
                    }
                    FieldLabel {
                        symbol: "clock"
                        text: "Created"
                    }
                    Label {
                        text: root.task?.words.created ?? ""
                    }
                    FieldLabel {
                        symbol: "checkmark.circle"
                        text: "Completed"
                        visible: (root.task?.words.completed ?? "") !== ""
                    }
                    Label {
                        visible: text !== ""
                        text: root.task?.words.completed ?? ""
                    }
                    FieldLabel {
                        symbol: "link"
                        text: "Source"
                        visible: (root.task?.words.source ?? "") !== ""
                    }
                    Label {
                        Layout.fillWidth: true
                        visible: text !== ""
                        text: root.task?.words.source ?? ""
                        color: root.task?.words.sourceURL ? Theme.accent : Theme.text
                        elide: Text.ElideRight

                        TapHandler {
                            enabled: /^(https?|mailto):/i.test(root.task?.words.sourceURL ?? "")
                            onTapped: Qt.openUrlExternally(root.task.words.sourceURL)
                        }
                    }
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
                RowLayout {
                    Layout.fillWidth: true
                    Layout.leftMargin: 20
                    Layout.rightMargin: 20
                    spacing: 10

                    Label {
                        text: root.task?.texts.subtasksTitle ?? ""
                        font.weight: Font.DemiBold
                        Accessible.role: Accessible.Heading
                    }
                    Label {
                        text: root.task?.words.subtasks ?? ""
                        color: Theme.secondaryText
                    }
                    ProgressBar {
                        Layout.fillWidth: true
                        visible: (root.task?.words.subtasks ?? "") !== ""
                        value: root.task?.words.progress ?? 0
                    }
                }
                Repeater {
                    model: root.task?.subtasks ?? null

                    SubtaskRow {
                        Layout.fillWidth: true
                        Layout.leftMargin: 14
                        Layout.rightMargin: 14
                        onToggled: root.task.toggleSubtask(recordId)
                        onPicked: root.opened("task", recordId)
                    }
                }
                TextField {
                    Layout.fillWidth: true
                    Layout.leftMargin: 20
                    Layout.rightMargin: 20
                    symbol: "plus"
                    placeholderText: "Add Subtask"
                    onAccepted: {
                        root.task.addSubtask(text);
                        clear();
                    }
                }
                RowLayout {
                    Layout.fillWidth: true
                    Layout.leftMargin: 20
                    Layout.rightMargin: 20
                    Layout.topMargin: 8

                    Label {
                        text: root.task?.texts.timeTitle ?? ""
                        font.weight: Font.DemiBold
                        Accessible.role: Accessible.Heading
                    }
                    Label {
                        Layout.fillWidth: true
                        text: root.task?.words.time ?? ""
                        color: Theme.secondaryText
                    }
                    ClockText {
                        visible: text !== ""
                        text: root.task?.words.clock ?? ""
                        color: Theme.green
                    }
                    ToolButton {
                        tip: "Log Time…"
                        icon.name: "plus"
                        onClicked: Desk.command("logTime")
                    }
                }
                Rectangle {
                    Layout.fillWidth: true
                    Layout.leftMargin: 20
                    Layout.rightMargin: 20
                    visible: entries.count > 0
                    implicitHeight: entryColumn.implicitHeight + 8
                    radius: Theme.cardRadius
                    color: Theme.card
                    border.color: Theme.line

                    ColumnLayout {
                        id: entryColumn

                        anchors.fill: parent
                        anchors.margins: 4
                        spacing: 0

                        Repeater {
                            id: entries

                            model: root.task?.entries ?? null

                            TaskEntryRow {
                                Layout.fillWidth: true
                                onPicked: root.entryEdited(recordId)
                            }
                        }
                    }
                }
                Label {
                    Layout.leftMargin: 20
                    Layout.topMargin: 8
                    text: root.task?.texts.commentsTitle ?? ""
                    font.weight: Font.DemiBold
                    Accessible.role: Accessible.Heading
                }
                Repeater {
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
