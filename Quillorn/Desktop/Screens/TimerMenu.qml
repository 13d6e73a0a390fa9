import QtQuick
import QtQuick.Layouts
import QuillornStyle

/// Chooses what the timer runs on, and when it has begun.
Popup {
    id: root

    property QtObject timer

    width: 320
    padding: 8
    onOpened: {
        typed.clear();
        when.clear();
        typed.forceActiveFocus();
    }
    contentItem: ColumnLayout {
        spacing: 6

        TextField {
            id: typed

            Layout.fillWidth: true
            symbol: "magnifyingglass"
            placeholderText: root.timer?.words.choicesPrompt ?? ""
        }
        RowList {
            Layout.fillWidth: true
            implicitHeight: Math.min(contentHeight, 240)
            Accessible.name: typed.placeholderText
            model: root.opened ? root.timer.choices(typed.text) : []
            delegate: ItemDelegate {
                required property var modelData

                width: ListView.view.width
                text: modelData.title
                highlighted: modelData.isActive
                onClicked: {
                    root.timer.start(modelData.id);
                    root.close();
                }
            }
        }
        Rectangle {
            Layout.fillWidth: true
            visible: root.timer?.isRunning ?? false
            implicitHeight: 1
            color: Theme.line
        }
        Label {
            visible: root.timer?.isRunning ?? false
            text: root.timer?.started ?? ""
            color: Theme.secondaryText
        }
        LayoutRepeater {
            model: root.timer?.isRunning ? root.timer.earlier() : []

            Button {
                required property var modelData

                Layout.fillWidth: true
                flat: true
                text: modelData.label
                onClicked: root.timer.startEarlier(modelData.minutes)
            }
        }
        TextField {
            id: when

            Layout.fillWidth: true
            visible: root.timer?.isRunning ?? false
            placeholderText: root.timer?.words.startPrompt ?? ""
            onAccepted: {
                problem.text = root.timer.adjust(text);
                if (!problem.text)
                    root.close();
            }
        }
        Label {
            id: problem

            Layout.fillWidth: true
            visible: text !== ""
            color: Theme.red
            wrapMode: Text.Wrap
        }
    }
}
