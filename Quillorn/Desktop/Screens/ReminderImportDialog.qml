import QtQuick
import QtQuick.Layouts
import QuillornStyle

/// Where a person decides on each open reminder: lists, rows, and what came of them.
Dialog {
    id: root

    property QtObject importing
    property var priorities: []
    readonly property string stage: importing?.stage ?? ""
    readonly property bool isReview: stage === "review"

    title: importing?.words.title ?? ""
    width: Math.min(isReview ? 900 : 520, (parent?.width ?? 900) - 40)
    topPadding: 4
    leftPadding: 0
    rightPadding: 0
    bottomPadding: 0
    closePolicy: importing?.isBusy ? Popup.NoAutoClose : Popup.CloseOnEscape

    contentItem: ColumnLayout {
        spacing: 0

        Label {
            Layout.leftMargin: 20
            Layout.rightMargin: 20
            Layout.fillWidth: true
            visible: root.isReview && reviewed.count > 0
            text: root.importing?.summary ?? ""
            font.pixelSize: Theme.caption
            color: Theme.secondaryText
            elide: Text.ElideRight
        }
        ReminderSetup {
            Layout.fillWidth: true
            Layout.margins: 20
            visible: root.stage === "setup"
            importing: root.importing
        }
        RowLayout {
            Layout.margins: 20
            visible: root.importing?.isBusy ?? false
            spacing: 10

            BusyIndicator {
                running: parent.visible
            }
            Label {
                text: root.importing?.busyWords ?? ""
                color: Theme.secondaryText
            }
        }
        Label {
            Layout.fillWidth: true
            Layout.margins: 20
            visible: text !== ""
            text: root.importing?.error || (root.importing?.hindrance ?? "")
            color: root.importing?.error ? Theme.red : Theme.amber
            wrapMode: Text.Wrap
            Accessible.role: Accessible.AlertMessage
        }
        ListView {
            id: reviewed

            readonly property QtObject follower: FollowFocus {
                view: reviewed
            }

            Layout.fillWidth: true
            Layout.topMargin: 12
            Layout.preferredHeight: Math.min(contentHeight, (root.parent?.height ?? 700) - 220)
            visible: root.isReview && count > 0 && !(root.importing?.isBusy ?? false)
            clip: true
            activeFocusOnTab: false
            model: root.importing?.rows ?? null
            Accessible.role: Accessible.List
            Accessible.name: root.title
            ScrollBar.vertical: ScrollBar {}
            delegate: ReminderTriageItem {
                width: reviewed.width
                importing: root.importing
                priorities: root.priorities
            }
        }
        ColumnLayout {
            Layout.fillWidth: true
            Layout.margins: 20
            visible: root.stage === "result"
            spacing: 10

            RowLayout {
                spacing: 8

                SymbolIcon {
                    name: root.importing?.words.resultSymbol ?? ""
                    color: Theme.green
                    size: 18
                }
                Label {
                    Layout.fillWidth: true
                    text: root.importing?.resultLine ?? ""
                    font.weight: Font.Medium
                    wrapMode: Text.Wrap
                    Accessible.role: Accessible.AlertMessage
                }
            }
            LayoutRepeater {
                model: root.importing?.failures ?? []

                RowLayout {
                    id: failure

                    required property string modelData

                    spacing: 8

                    SymbolIcon {
                        name: root.importing.words.failureSymbol
                        color: Theme.amber
                    }
                    Label {
                        Layout.fillWidth: true
                        text: failure.modelData
                        wrapMode: Text.Wrap
                    }
                }
            }
        }
    }
    footer: ReminderImportFooter {
        importing: root.importing
        onFinished: root.close()
    }
}
