import QtQuick
import QtQuick.Layouts
import QuillornStyle

/// The running timer; nothing while none runs.
Rectangle {
    id: root

    property QtObject timer
    property bool isNarrow: false

    signal opened(string task)

    visible: timer?.isRunning ?? false
    implicitWidth: row.implicitWidth + 20
    implicitHeight: Math.round(32 * Theme.textScale)
    radius: height / 2
    color: Theme.tint(Theme.green)

    RowLayout {
        id: row

        anchors.verticalCenter: parent.verticalCenter
        x: 12
        spacing: 8

        Rectangle {
            implicitWidth: 8
            implicitHeight: 8
            radius: 4
            color: root.timer?.tone ? Theme.shade(root.timer.tone) : Theme.green
        }
        AbstractChip {
            visible: !root.isNarrow
            implicitWidth: Math.min(title.implicitWidth, 200)
            implicitHeight: 24
            Accessible.name: root.timer?.title ?? ""
            onClicked: root.opened(root.timer.task)
            contentItem: Label {
                id: title

                text: root.timer?.title ?? ""
                elide: Text.ElideRight
                verticalAlignment: Text.AlignVCenter
            }
        }
        AbstractChip {
            implicitWidth: clock.implicitWidth
            implicitHeight: 24
            Accessible.name: (root.timer?.clock ?? "") + ", " + (root.timer?.started ?? "")
            ToolTip.text: root.timer?.started ?? ""
            ToolTip.visible: hovered
            ToolTip.delay: 600
            onClicked: menu.open()
            contentItem: Item {
                ClockText {
                    id: clock

                    anchors.verticalCenter: parent.verticalCenter
                    text: root.timer?.clock ?? ""
                    color: Theme.green
                }
            }

            TimerMenu {
                id: menu

                y: parent.height + 6
                timer: root.timer
            }
        }
        AbstractChip {
            implicitWidth: 22
            implicitHeight: 22
            Accessible.name: root.timer?.words.stopLabel ?? ""
            ToolTip.text: root.timer?.words.stopHelp ?? ""
            ToolTip.visible: hovered
            ToolTip.delay: 600
            onClicked: root.timer.stop()
            background: Rectangle {
                radius: 11
                color: Theme.green
                border.width: parent.visualFocus ? 2 : 0
                border.color: Theme.accent
            }
            contentItem: Item {
                SymbolIcon {
                    anchors.centerIn: parent
                    name: root.timer?.words.stopSymbol ?? ""
                    color: Theme.window
                    size: 14
                }
            }
        }
    }
}
