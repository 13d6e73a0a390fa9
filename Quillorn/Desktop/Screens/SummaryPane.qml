import QtQuick
import QtQuick.Layouts
import QuillornStyle

/// What today has brought.
ScrollView {
    id: root

    property QtObject summary
    readonly property var tiles: summary?.tiles ?? []

    signal taskOpened(string task)
    signal noteOpened(string note)

    contentWidth: availableWidth

    SecondsTimer {
        screen: root
        isWanted: root.summary?.hasRunning ?? false
        onTriggered: root.summary.update()
    }
    ColumnLayout {
        width: root.availableWidth
        spacing: 12

        EmptyState {
            Layout.fillWidth: true
            Layout.topMargin: 120
            visible: root.summary?.isEmpty ?? false
            symbol: root.summary?.words.emptyIcon ?? ""
            title: root.summary?.words.emptyTitle ?? ""
            text: root.summary?.words.emptyMessage ?? ""
        }
        ColumnLayout {
            Layout.fillWidth: true
            Layout.margins: 18
            visible: !(root.summary?.isEmpty ?? true)
            spacing: 14

            Label {
                text: root.summary?.words.heading ?? ""
                font.pixelSize: Theme.heading
                font.weight: Font.DemiBold
                Accessible.role: Accessible.Heading
            }
            GridLayout {
                Layout.fillWidth: true
                columns: Math.max(2, Math.min(root.tiles.length, Math.floor(root.availableWidth / 160)))
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
            SummaryList {
                Layout.fillWidth: true
                title: root.summary?.words.completedTitle ?? ""
                symbol: "checkmark.circle.fill"
                tone: Theme.green
                rows: root.summary?.completed ?? null
                onOpened: record => root.taskOpened(record)
            }
            SummaryList {
                Layout.fillWidth: true
                title: root.summary?.words.notesTitle ?? ""
                symbol: "note.text"
                tone: Theme.yellow
                rows: root.summary?.notes ?? null
                onOpened: record => root.noteOpened(record)
            }
        }
    }
}
