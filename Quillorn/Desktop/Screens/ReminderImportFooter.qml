import QtQuick
import QtQuick.Layouts
import QuillornStyle

/// What can be done at each stage of the import.
Rectangle {
    id: root

    property QtObject importing
    readonly property string stage: importing?.stage ?? ""
    readonly property bool isBusy: importing?.isBusy ?? false
    readonly property bool hasFailed: (importing?.error ?? "") !== ""

    signal finished

    /// The button that had the keyboard may be gone.
    function takeFocus() {
        if (!isBusy && stage !== "setup")
            [back, done, take, cancel].find(button => button.visible && button.enabled)?.forceActiveFocus(Qt.TabFocusReason);
    }

    onStageChanged: Qt.callLater(takeFocus)
    onIsBusyChanged: Qt.callLater(takeFocus)
    implicitHeight: 60
    color: Theme.panel
    radius: 12

    Rectangle {
        width: parent.width
        height: 1
        color: Theme.line
    }
    RowLayout {
        anchors.fill: parent
        anchors.leftMargin: 20
        anchors.rightMargin: 20
        spacing: 8

        Switch {
            visible: root.stage !== "result"
            text: root.importing?.words.completesLabel ?? ""
            checked: root.importing?.completes ?? false
            onToggled: root.importing.completes = checked
        }
        Item {
            Layout.fillWidth: true
        }
        Button {
            id: back

            visible: root.hasFailed
            text: root.importing?.words.backButton ?? ""
            onClicked: root.importing.back()
        }
        Button {
            id: cancel

            visible: root.stage !== "result"
            text: root.importing?.words.cancelButton ?? ""
            enabled: !root.isBusy
            onClicked: root.finished()
        }
        Button {
            visible: root.stage === "setup"
            text: root.importing?.words.scanButton ?? ""
            highlighted: true
            enabled: root.importing?.canScan ?? false
            onClicked: root.importing.scan()
        }
        Button {
            id: take

            visible: root.stage === "review" && !root.hasFailed
            text: root.importing?.importLabel ?? ""
            highlighted: true
            enabled: root.importing?.canImport ?? false
            onClicked: root.importing.importChosen()
        }
        Button {
            id: done

            visible: root.stage === "result"
            text: root.importing?.words.doneButton ?? ""
            highlighted: true
            onClicked: root.finished()
        }
    }
}
