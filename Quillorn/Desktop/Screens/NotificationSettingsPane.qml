import QtQuick
import QtQuick.Layouts
import QuillornStyle

ColumnLayout {
    id: root

    property QtObject settings
    readonly property bool isGranted: settings.permission === 0

    spacing: 12

    RowLayout {
        spacing: 8

        SymbolIcon {
            name: root.isGranted ? root.settings.words.enabledSymbol : "exclamationmark.triangle.fill"
            color: root.isGranted ? Theme.green : Theme.amber
        }
        Label {
            text: root.isGranted ? root.settings.words.enabledTitle : root.settings.words.disabledTitle
            font.weight: Font.DemiBold
        }
    }
    Label {
        Layout.fillWidth: true
        visible: root.settings.permission === 2
        text: root.settings.words.disabledText
        color: Theme.secondaryText
        wrapMode: Text.Wrap
    }
    Button {
        visible: root.settings.permission === 1
        text: root.settings.words.enableButton
        onClicked: root.settings.enable()
    }
    SettingSwitch {
        text: root.settings.words.toggleLabel
        enabled: root.isGranted
        checked: root.settings.isOn
        onToggled: root.settings.isOn = checked
    }
    FormRow {
        label: root.settings.words.timeLabel
        labelWidth: 120
        enabled: root.isGranted && root.settings.isOn

        SpinBox {
            to: 23
            value: root.settings.hour
            onValueModified: root.settings.setTime(value, root.settings.minute)
            Accessible.name: root.settings.words.timeLabel
        }
        Label {
            text: ":"
        }
        SpinBox {
            to: 59
            value: root.settings.minute
            onValueModified: root.settings.setTime(root.settings.hour, value)
            Accessible.name: root.settings.words.timeLabel
        }
    }
    PaneTitle {
        text: root.settings.words.aboutTitle
    }
    Label {
        Layout.fillWidth: true
        text: root.settings.words.aboutText
        color: Theme.secondaryText
        wrapMode: Text.Wrap
    }
}
