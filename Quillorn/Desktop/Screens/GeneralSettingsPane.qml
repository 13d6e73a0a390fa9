import QtQuick
import QtQuick.Layouts
import QtQuick.Controls
import QuillornStyle

ColumnLayout {
    id: root

    property QtObject settings

    spacing: 12

    PaneTitle {
        symbol: root.settings.words.tasksSymbol
        text: root.settings.words.tasks
    }
    Switch {
        text: root.settings.words.showCompletedLabel
        checked: root.settings.showsCompleted
        onToggled: root.settings.showsCompleted = checked
    }
    FormRow {
        label: root.settings.words.defaultPriorityLabel
        labelWidth: 120

        ComboBox {
            model: root.settings.priorities
            currentIndex: root.settings.priority
            onActivated: index => root.settings.priority = index
            Accessible.name: root.settings.words.defaultPriorityLabel
        }
    }
    PaneTitle {
        symbol: root.settings.words.subtasksSymbol
        text: root.settings.words.subtasks
    }
    FormRow {
        label: root.settings.words.completionLabel
        labelWidth: 120
        help: root.settings.completionHelp

        ComboBox {
            model: root.settings.completions
            currentIndex: root.settings.completion
            onActivated: index => root.settings.completion = index
            Accessible.name: root.settings.words.completionLabel
        }
    }
    PaneTitle {
        symbol: root.settings.words.thoughtkegSymbol
        text: root.settings.words.thoughtkeg
    }
    Switch {
        text: root.settings.words.pushLabel
        checked: root.settings.pushes
        onToggled: root.settings.pushes = checked
    }
    Label {
        Layout.fillWidth: true
        text: root.settings.words.pushHelp
        font.pixelSize: Theme.caption
        color: Theme.secondaryText
        wrapMode: Text.Wrap
    }
}
