import QtQuick
import QtQuick.Layouts
import QtQuick.Dialogs as Files
import QuillornStyle

ColumnLayout {
    id: root

    property QtObject settings

    spacing: 12

    PaneTitle {
        symbol: "externaldrive.badge.timemachine"
        text: root.settings.words.automaticTitle
    }
    SettingSwitch {
        text: root.settings.words.automaticLabel
        checked: root.settings.isAutomatic
        onToggled: root.settings.isAutomatic = checked
    }
    FormRow {
        label: root.settings.words.folderLabel

        Label {
            Layout.fillWidth: true
            text: root.settings.folder
            elide: Text.ElideMiddle
        }
    }
    FormRow {
        help: root.settings.words.tip

        Button {
            text: root.settings.words.chooseButton
            onClicked: folders.open()
        }
        Button {
            text: root.settings.words.showButton
            onClicked: Qt.openUrlExternally("file://" + encodeURI(root.settings.folder))
        }
    }
    RowLayout {
        visible: root.settings.folderWarning !== ""

        SymbolIcon {
            name: root.settings.words.warningSymbol
            color: Theme.amber
        }
        Label {
            Layout.fillWidth: true
            text: root.settings.folderWarning
            color: Theme.amber
            wrapMode: Text.Wrap
        }
    }
    FormRow {
        label: root.settings.words.lastLabel

        Label {
            Layout.fillWidth: true
            text: root.settings.lastBackup
        }
        BusyIndicator {
            running: root.settings.isBackingUp
        }
        Button {
            text: root.settings.words.backUpButton
            enabled: !root.settings.isBackingUp && !root.settings.isRestoring
            onClicked: root.settings.backUpNow()
        }
    }
    Label {
        Layout.fillWidth: true
        visible: text !== ""
        text: root.settings.lastError || root.settings.lastResult
        color: root.settings.lastError ? Theme.red : Theme.green
        wrapMode: Text.Wrap
    }
    PaneTitle {
        text: root.settings.words.restoreTitle
    }
    Label {
        Layout.fillWidth: true
        text: root.settings.words.restoreText
        color: Theme.secondaryText
        wrapMode: Text.Wrap
    }
    Button {
        text: root.settings.restoreButton
        enabled: !root.settings.isBackingUp && !root.settings.isRestoring
        onClicked: files.open()
    }
    Files.FolderDialog {
        id: folders

        title: root.settings.words.choosePrompt
        onAccepted: root.settings.chooseFolder(selectedFolder)
    }
    Files.FileDialog {
        id: files

        title: root.settings.words.restorePrompt
        currentFolder: "file://" + encodeURI(root.settings.folder)
        onAccepted: question.ask(root.settings.question(selectedFile), () => root.settings.restore(selectedFile))
    }
    ConfirmDialog {
        id: question
    }
}
