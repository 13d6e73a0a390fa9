import QtQuick
import QtQuick.Layouts
import QuillornStyle

/// One line in which a task is added, with what was understood below.
ApplicationWindow {
    id: root

    property QtObject quickAdd

    signal done

    function add(startsTimer) {
        if (quickAdd.canAdd && (startsTimer ? quickAdd.addAndStart() : quickAdd.add()))
            done();
    }

    width: 600
    height: frame.implicitHeight
    minimumWidth: 420
    minimumHeight: frame.implicitHeight
    maximumHeight: frame.implicitHeight
    transientParent: null // it stands without the main window too
    flags: Qt.Dialog | Qt.FramelessWindowHint
    title: quickAdd?.words.windowTitle ?? ""

    Rectangle {
        id: frame

        anchors.fill: parent
        implicitHeight: column.implicitHeight + 2
        color: Theme.window
        border.color: Theme.isHighContrast ? Theme.text : Theme.edge

        DragHandler {
            target: null
            onActiveChanged: if (active)
                root.startSystemMove()
        }
        ColumnLayout {
            id: column

            anchors.fill: parent
            anchors.margins: 1
            spacing: 0

            RowLayout {
                Layout.fillWidth: true
                Layout.margins: 18
                Layout.bottomMargin: 14
                spacing: 12

                SymbolIcon {
                    Layout.alignment: Qt.AlignTop
                    Layout.topMargin: 4
                    name: "circle"
                    color: Theme.edge
                    size: 20
                }
                ColumnLayout {
                    Layout.fillWidth: true
                    spacing: 6

                    BareField {
                        id: line

                        Layout.fillWidth: true
                        focus: true
                        font.pixelSize: Theme.title - 2
                        font.weight: Font.Medium
                        placeholderText: root.quickAdd?.words.prompt ?? ""
                        onTextEdited: root.quickAdd.text = text
                        onAccepted: root.add(false)
                    }
                    BareField {
                        Layout.fillWidth: true
                        placeholderText: root.quickAdd?.words.notesPrompt ?? ""
                        onTextEdited: root.quickAdd.notes = text
                        onAccepted: root.add(false)
                    }
                    Flow {
                        Layout.fillWidth: true
                        Layout.topMargin: 6
                        Layout.minimumHeight: Math.round(22 * Theme.textScale)
                        spacing: 8

                        LayoutRepeater {
                            model: root.quickAdd?.chips ?? []

                            Badge {
                                required property var modelData

                                text: modelData.text
                                symbol: modelData.symbol
                                tone: Theme.shade(modelData.tone)
                            }
                        }
                    }
                }
            }
            Rectangle {
                Layout.fillWidth: true
                implicitHeight: 1
                color: Theme.line
            }
            RowLayout {
                Layout.fillWidth: true
                Layout.margins: 14
                Layout.leftMargin: 18
                spacing: 8

                Label {
                    Layout.fillWidth: true
                    text: root.quickAdd?.problem || (root.quickAdd?.words.hint ?? "")
                    font.pixelSize: Theme.caption
                    color: root.quickAdd?.problem ? Theme.red : Theme.secondaryText
                    elide: Text.ElideRight
                    Accessible.role: root.quickAdd?.problem ? Accessible.AlertMessage : Accessible.StaticText
                }
                Button {
                    text: root.quickAdd?.words.startButton ?? ""
                    icon.name: "play.fill"
                    enabled: root.quickAdd?.canAdd ?? false
                    onClicked: root.add(true)
                }
                Button {
                    text: root.quickAdd?.words.addButton ?? ""
                    highlighted: true
                    enabled: root.quickAdd?.canAdd ?? false
                    onClicked: root.add(false)
                }
            }
        }
    }
    Shortcut {
        sequences: ["Escape", StandardKey.Close]
        onActivated: root.done()
    }
    Shortcut {
        sequences: ["Ctrl+Return", "Ctrl+Enter"]
        onActivated: root.add(true)
    }
}
