import QtQuick
import QtQuick.Layouts
import QuillornStyle

/// What today has brought.
Item {
    id: root

    property QtObject summary
    readonly property var tiles: summary?.tiles ?? []
    readonly property bool isEmpty: summary?.isEmpty ?? false

    signal taskOpened(string task)
    signal noteOpened(string note)

    SecondsTimer {
        screen: root
        isWanted: root.summary?.hasRunning ?? false
        onTriggered: root.summary.update()
    }
    HeadedList {
        id: list

        anchors.fill: parent
        leftMargin: 18
        rightMargin: 18
        bottomMargin: 16
        visible: !root.isEmpty
        model: root.summary?.completed ?? null
        Accessible.name: root.summary?.words.completedTitle ?? ""

        header: ColumnLayout {
            width: list.width - 36
            spacing: 14

            Label {
                Layout.topMargin: 18
                text: root.summary?.words.heading ?? ""
                font.pixelSize: Theme.heading
                font.weight: Font.DemiBold
                Accessible.role: Accessible.Heading
            }
            GridLayout {
                Layout.fillWidth: true
                columns: Math.max(2, Math.min(root.tiles.length, Math.floor(width / 160)))
                columnSpacing: 12
                rowSpacing: 12

                LayoutRepeater {
                    model: root.tiles.length

                    FigureCard {
                        required property int index
                        readonly property var tile: root.tiles[index] ?? ({})

                        Layout.fillWidth: true
                        Layout.fillHeight: true
                        Layout.preferredWidth: 1
                        isHero: index === 0
                        label: tile.label ?? ""
                        figure: tile.figure ?? ""
                        note: tile.note ?? ""
                    }
                }
            }
            Label {
                Layout.topMargin: 8
                Layout.bottomMargin: 4
                visible: list.count > 0
                text: root.summary?.words.completedTitle ?? ""
                font.weight: Font.DemiBold
                color: Theme.secondaryText
                Accessible.role: Accessible.Heading
            }
        }
        delegate: RecordRow {
            width: list.width - 36
            symbol: "checkmark.circle.fill"
            tone: Theme.green
            onPicked: root.taskOpened(recordId)
        }
        footer: SummaryList {
            width: list.width - 36
            title: root.summary?.words.notesTitle ?? ""
            symbol: "note.text"
            tone: Theme.yellow
            rows: root.summary?.notes ?? null
            onOpened: record => root.noteOpened(record)
        }
    }
    EmptyState {
        anchors.horizontalCenter: parent.horizontalCenter
        y: 120
        width: Math.min(parent.width - 48, 400)
        visible: root.isEmpty
        symbol: root.summary?.words.emptyIcon ?? ""
        title: root.summary?.words.emptyTitle ?? ""
        text: root.summary?.words.emptyMessage ?? ""
    }
}
