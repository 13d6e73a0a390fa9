import QtQuick
import QtQuick.Layouts
import QuillornStyle

ColumnLayout {
    id: root

    property QtObject settings

    spacing: 12

    PaneTitle {
        symbol: "network"
        text: root.settings.words.httpTitle
    }
    FormRow {
        label: root.settings.words.statusLabel

        Rectangle {
            implicitWidth: 8
            implicitHeight: 8
            radius: 4
            color: root.settings.isRunning ? Theme.green : Theme.edge
        }
        Label {
            Layout.fillWidth: true
            text: root.settings.status
        }
        Button {
            text: root.settings.toggleButton
            onClicked: root.settings.toggle()
        }
    }
    FormRow {
        label: ""
        visible: root.settings.lastError !== ""

        Label {
            Layout.fillWidth: true
            text: root.settings.lastError
            color: Theme.red
            wrapMode: Text.Wrap
            Accessible.role: Accessible.AlertMessage
        }
    }
    FormRow {
        label: root.settings.words.portLabel

        TextField {
            Layout.preferredWidth: 90
            text: root.settings.port
            onEditingFinished: root.settings.port = text
            Accessible.name: root.settings.words.portLabel
        }
    }
    FormRow {
        label: root.settings.words.keyLabel

        TextField {
            Layout.fillWidth: true
            text: root.settings.key
            placeholderText: root.settings.words.keyLabel // of a password nothing else is told
            echoMode: reveal.checked ? TextInput.Normal : TextInput.Password
            onEditingFinished: root.settings.key = text
            Accessible.name: root.settings.words.keyLabel
        }
        ToolButton {
            id: reveal

            checkable: true
            tip: checked ? root.settings.words.hideKeyButton : root.settings.words.showKeyButton
            icon.name: checked ? "eye.slash" : "eye"
        }
        Button {
            text: root.settings.words.generateButton
            onClicked: root.settings.generateKey()
        }
    }
    FormRow {
        label: ""
        visible: root.settings.keyWarning !== ""

        Label {
            Layout.fillWidth: true
            text: root.settings.keyWarning
            color: Theme.amber
            wrapMode: Text.Wrap
        }
    }
    SettingSwitch {
        text: root.settings.words.autoStartLabel
        checked: root.settings.startsAtLaunch
        onToggled: root.settings.startsAtLaunch = checked
    }
    SettingSwitch {
        text: root.settings.words.externalLabel
        checked: root.settings.isExternal
        onToggled: root.settings.isExternal = checked
    }
    SettingSwitch {
        text: root.settings.words.requireAuthLabel
        checked: root.settings.requiresAuth
        onToggled: root.settings.requiresAuth = checked
    }
    FormRow {
        label: root.settings.words.endpointLabel
        help: root.settings.words.httpContents

        SelectableText {
            Layout.fillWidth: true
            text: root.settings.endpoint
        }
    }
    PaneTitle {
        symbol: "sparkles"
        text: root.settings.words.mcpTitle
    }
    FormRow {
        label: root.settings.words.endpointLabel
        help: root.settings.words.mcpContents

        SelectableText {
            Layout.fillWidth: true
            text: root.settings.mcpEndpoint
        }
    }
    Flow {
        Layout.fillWidth: true
        spacing: 8

        Button {
            text: root.settings.copyConfigButton
            icon.name: "doc.on.doc"
            onClicked: root.settings.copyConfig()
        }
        Button {
            text: root.settings.words.copyDirectiveButton
            icon.name: "doc.on.doc"
            onClicked: root.settings.copyDirective()
        }
    }
}
