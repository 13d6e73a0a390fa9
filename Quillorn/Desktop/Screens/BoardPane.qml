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
        model: root.record?.board ?? []

        BoardColumnView {
            required property var modelData

            Layout.fillWidth: true
            Layout.fillHeight: true
            Layout.preferredWidth: 1
            column: modelData
            current: root.current
            carrier: root.carrier
            onCardDropped: task => root.record.moveCard(task, column.status)
            onOpened: task => root.opened(task)
            onCardMoved: (task, by) => {
                const columns = root.record.board;
                const place = columns.findIndex(each => each.status === column.status) + by;
                if (place >= 0 && place < columns.length)
                    root.record.moveCard(task, columns[place].status);
            }
            onCardAdded: title => root.record.addCard(title, column.status)
        }
    }
}
