import QtQuick
import QuillornStyle

/// Status, priority and tags of a task, to be changed in place.
Flow {
    id: root

    property QtObject task
    property var statuses: []
    property var priorities: []

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
    LayoutRepeater {
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
