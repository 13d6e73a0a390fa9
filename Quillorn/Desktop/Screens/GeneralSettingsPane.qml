import QtQuick
import QtQuick.Layouts
import QuillornStyle

ColumnLayout {
    id: root

    property QtObject settings
    property QtObject desktop

    spacing: 12
    Component.onCompleted: desktop.appear()

    PaneTitle {
        symbol: root.settings.words.tasksSymbol
        text: root.settings.words.tasks
    }
    SettingSwitch {
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
    SettingSwitch {
        text: root.settings.words.pushLabel
        checked: root.settings.pushes
        onToggled: root.settings.pushes = checked
    }
    HelpLabel {
        text: root.settings.words.pushHelp
    }
    PaneTitle {
        symbol: root.desktop.words.titleSymbol
        text: root.desktop.words.title
    }
    SettingSwitch {
        text: root.desktop.words.loginLabel
        checked: root.desktop.startsAtLogin
        onToggled: root.desktop.startsAtLogin = checked
    }
    HelpLabel {
        visible: text
        text: root.desktop.loginProblem
        color: Theme.red
        Accessible.role: Accessible.AlertMessage
    }
    SettingSwitch {
        text: root.desktop.words.trayLabel
        checked: root.desktop.keepsRunning
        onToggled: root.desktop.keepsRunning = checked
    }
    HelpLabel {
        text: root.desktop.words.trayHelp
    }
    SettingSwitch {
        visible: root.desktop.hasShortcut
        text: root.desktop.words.shortcutLabel
        checked: root.desktop.wantsShortcut
        onToggled: root.desktop.wantsShortcut = checked
    }
    HelpLabel {
        text: root.desktop.shortcutHelp
    }
}
