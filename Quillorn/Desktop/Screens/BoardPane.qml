import QtQuick
import QtQuick.Layouts

/// The tasks of a project by their status.
RowLayout {
    id: root

    property QtObject record
    property string current
    property Item carrier

    signal opened(string task)

    spacing: 12

    LayoutRepeater {
        id: columns

        model: root.record?.board ?? []

        BoardColumnView {
            required property var modelData
            required property int index

            Layout.fillWidth: true
            Layout.fillHeight: true
            Layout.preferredWidth: 1
            column: modelData
            current: root.current
            carrier: root.carrier
            onCardDropped: task => root.record.moveCard(task, column.status)
            onOpened: task => root.opened(task)
            onCardMoved: (task, by) => {
                const next = columns.itemAt(index + by);
                if (!next)
                    return;
                root.record.moveCard(task, next.column.status);
                Qt.callLater(() => next.focusCard(task));
            }
            onCardAdded: title => root.record.addCard(title, column.status)
        }
    }
}
