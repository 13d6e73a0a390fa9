import QtQuick
import QuillornStyle

ApplicationWindow {
    id: window

    readonly property bool isRecovery: Recovery.message !== undefined

    width: 1100
    height: 720
    minimumWidth: 640
    minimumHeight: 400
    visible: true
    title: "Quillorn"
    Component.onCompleted: if (!isRecovery)
        Desk.restore()

    Binding {
        target: Theme
        property: "isDark"
        value: Look.isDark
    }
    Binding {
        target: Theme
        property: "isHighContrast"
        value: Look.isHighContrast
    }
    Binding {
        target: Theme
        property: "isStill"
        value: Look.isStill
    }
    Binding {
        target: Theme
        property: "textScale"
        value: Look.textScale
    }
    Loader {
        anchors.fill: parent
        focus: true
        Keys.onEscapePressed: event => event.accepted = !window.isRecovery && item.back()
        source: window.isRecovery ? "RecoveryScreen.qml" : "Workspace.qml"
    }
}
