import QtQuick
import QtQuick.Layouts
import QuillornStyle

/// Narrows a list to the tasks of one meeting.
RowLayout {
    id: root

    property QtObject tasks

    spacing: 6

    Button {
        Layout.leftMargin: 12
        Layout.topMargin: 8
        flat: true
        icon.name: "person.2.wave.2"
        text: root.tasks?.meetingButton ?? ""
        tone: root.tasks?.meeting ? Theme.accent : Theme.secondaryText
        ToolTip.text: root.tasks?.words.meetingHelp ?? ""
        ToolTip.visible: hovered
        ToolTip.delay: 600
        onClicked: picker.open()

        Popup {
            id: picker

            y: parent.height + 2
            width: 320
            padding: 8
            onOpened: {
                typed.clear();
                typed.forceActiveFocus();
            }
            contentItem: ColumnLayout {
                spacing: 6

                TextField {
                    id: typed

                    Layout.fillWidth: true
                    symbol: "magnifyingglass"
                    placeholderText: root.tasks?.words.meetingPrompt ?? ""
                }
                RowList {
                    id: list

                    Layout.fillWidth: true
                    implicitHeight: Math.min(contentHeight, 280)
                    Accessible.name: typed.placeholderText
                    model: picker.opened ? root.tasks.meetings(typed.text) : []
                    delegate: ItemDelegate {
                        required property var modelData

                        width: ListView.view.width
                        text: modelData.label
                        highlighted: modelData.key === root.tasks.meeting
                        onClicked: {
                            root.tasks.meeting = modelData.key;
                            picker.close();
                        }
                    }
                }
                Label {
                    Layout.fillWidth: true
                    visible: picker.opened && list.count === 0
                    text: visible ? root.tasks.noMeetings(typed.text) : ""
                    color: Theme.secondaryText
                    wrapMode: Text.Wrap
                }
            }
        }
    }
    ToolButton {
        Layout.topMargin: 8
        visible: (root.tasks?.meeting ?? "") !== ""
        tip: root.tasks?.words.clearMeetingButton ?? ""
        icon.name: "xmark.circle.fill"
        onClicked: root.tasks.meeting = ""
    }
    Item {
        Layout.fillWidth: true
    }
}
