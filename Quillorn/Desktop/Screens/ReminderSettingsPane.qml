import QtQuick
import QtQuick.Layouts
import QuillornStyle

ColumnLayout {
    id: root

    property QtObject settings

    spacing: 12
    Component.onCompleted: settings.appear()

    RowLayout {
        visible: root.settings.hasAccess === false

        SymbolIcon {
            name: root.settings.words.noAccessSymbol
            color: Theme.amber
        }
        Label {
            Layout.fillWidth: true
            text: root.settings.words.noAccess
            wrapMode: Text.Wrap
        }
    }
    Label {
        Layout.fillWidth: true
        visible: !root.settings.isConfigured
        text: root.settings.words.notConfigured
        color: Theme.amber
        wrapMode: Text.Wrap
    }
    PaneTitle {
        symbol: "checklist"
        text: root.settings.words.listsTitle
    }
    LayoutRepeater {
        model: root.settings.lists

        CheckBox {
            required property var modelData

            text: modelData.name
            checked: modelData.isChosen
            onToggled: root.settings.setChosen(modelData.name, checked)
        }
    }
    PaneTitle {
        text: root.settings.words.scheduleTitle
    }
    SettingSwitch {
        text: root.settings.words.automaticLabel
        checked: root.settings.isAutomatic
        onToggled: root.settings.isAutomatic = checked
    }
    ComboBox {
        enabled: root.settings.isAutomatic
        model: root.settings.intervals
        currentIndex: root.settings.interval
        onActivated: index => root.settings.interval = index
        Accessible.name: root.settings.words.scheduleTitle
    }
    SettingSwitch {
        text: root.settings.words.completesLabel
        checked: root.settings.completes
        onToggled: root.settings.completes = checked
    }
    Label {
        Layout.fillWidth: true
        text: root.settings.explanation
        font.pixelSize: Theme.caption
        color: Theme.secondaryText
        wrapMode: Text.Wrap
    }
    PaneTitle {
        text: root.settings.words.activityTitle
    }
    Label {
        Layout.fillWidth: true
        text: [root.settings.activity.lastRun, root.settings.activity.lastResult, root.settings.activity.nextRun, root.settings.activity.skipped].filter(word => word).join("\n")
        color: Theme.secondaryText
        wrapMode: Text.Wrap
    }
    RowLayout {
        spacing: 8

        Button {
            text: root.settings.words.runLabel
            enabled: root.settings.isConfigured && !root.settings.isRunning
            onClicked: root.settings.runNow()
        }
        Button {
            text: root.settings.words.reviewLabel
            onClicked: Desk.command("importReminders")
        }
        Button {
            visible: root.settings.activity.skipped !== ""
            text: root.settings.words.recheckLabel
            ToolTip.text: root.settings.words.recheckHelp
            ToolTip.visible: hovered
            ToolTip.delay: 600
            onClicked: root.settings.recheckSkipped()
        }
        BusyIndicator {
            running: root.settings.isRunning
        }
    }
    PaneTitle {
        visible: root.settings.recent.length > 0
        text: root.settings.words.recentTitle
    }
    LayoutRepeater {
        model: root.settings.recent

        Label {
            required property string modelData

            Layout.fillWidth: true
            text: modelData
            color: Theme.secondaryText
            elide: Text.ElideRight
        }
    }
}
