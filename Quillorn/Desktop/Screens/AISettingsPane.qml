import QtQuick
import QtQuick.Layouts
import QuillornStyle

ColumnLayout {
    id: root

    property QtObject ai

    spacing: 14
    Component.onCompleted: ai.appear()

    FormRow {
        label: "Endpoint"

        TextField {
            Layout.fillWidth: true
            text: root.ai.endpoint
            placeholderText: root.ai.words.endpointPrompt
            onEditingFinished: root.ai.endpoint = text
        }
        Button {
            text: "Use VibeProxy"
            ToolTip.text: root.ai.words.vibeProxyHelp
            ToolTip.visible: hovered
            ToolTip.delay: 600
            onClicked: root.ai.useVibeProxy()
        }
    }
    FormRow {
        label: "Model"

        ComboBox {
            Layout.fillWidth: true
            visible: root.ai.modelRows.length > 0
            model: root.ai.modelRows
            currentIndex: root.ai.modelRows.indexOf(root.ai.model)
            onActivated: index => root.ai.model = root.ai.modelRows[index]
            Accessible.name: "Model"
        }
        TextField {
            Layout.fillWidth: true
            visible: root.ai.modelRows.length === 0
            text: root.ai.model
            placeholderText: root.ai.words.modelPrompt
            onEditingFinished: root.ai.model = text
        }
        BusyIndicator {
            running: root.ai.isLoadingModels
        }
        ToolButton {
            visible: !root.ai.isLoadingModels
            tip: root.ai.words.refreshHelp
            icon.name: "arrow.clockwise"
            onClicked: root.ai.reloadModels()
        }
    }
    FormRow {
        label: ""
        visible: root.ai.modelLoadError !== ""

        Label {
            Layout.fillWidth: true
            text: root.ai.modelLoadError
            color: Theme.red
            wrapMode: Text.Wrap
        }
    }
    FormRow {
        label: "Reasoning"
        help: root.ai.words.reasoningHelp

        ComboBox {
            model: root.ai.reasoningLabels
            currentIndex: root.ai.reasoning
            onActivated: index => root.ai.reasoning = index
            Accessible.name: "Reasoning"
        }
    }
    FormRow {
        label: "API Key"
        help: root.ai.words.apiKeyHelp

        TextField {
            Layout.fillWidth: true
            text: root.ai.apiKey
            echoMode: TextInput.Password
            placeholderText: root.ai.words.apiKeyPrompt
            Accessible.name: "API Key"
            onEditingFinished: root.ai.apiKey = text
        }
    }
    FormRow {
        label: ""

        Button {
            text: root.ai.testButton
            enabled: !root.ai.isTesting
            onClicked: root.ai.testConnection()
        }
        SymbolIcon {
            visible: root.ai.testResult !== ""
            name: root.ai.isGoodResult ? "checkmark.circle.fill" : "exclamationmark.circle.fill"
            color: root.ai.isGoodResult ? Theme.green : Theme.red
        }
        Label {
            Layout.fillWidth: true
            text: root.ai.testResult
            color: root.ai.isGoodResult ? Theme.green : Theme.red
            wrapMode: Text.Wrap
            maximumLineCount: 4
            elide: Text.ElideRight
        }
    }
}
