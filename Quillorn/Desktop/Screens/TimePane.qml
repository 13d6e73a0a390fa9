import QtQuick
import QtQuick.Layouts
import QuillornStyle

/// The time of a client, a project or everything.
ScrollView {
    id: root

    property QtObject time
    property var confirm
    readonly property var figures: time?.figures ?? []

    signal edited(string entry)

    contentWidth: availableWidth

    SecondsTimer {
        screen: root
        isWanted: root.time?.hasRunning ?? false
        onTriggered: root.time.update()
    }
    ColumnLayout {
        width: root.availableWidth
        spacing: 16

        GridLayout {
            Layout.fillWidth: true
            Layout.margins: 18
            Layout.bottomMargin: 0
            columns: Math.max(2, Math.min(5, Math.floor(root.availableWidth / 150)))
            columnSpacing: 12
            rowSpacing: 12

            LayoutRepeater {
                model: root.figures.length

                FigureCard {
                    required property int index
                    readonly property var part: root.figures[index] ?? ({})

                    Layout.fillWidth: true
                    Layout.fillHeight: true
                    Layout.preferredWidth: 1
                    isHero: index === 0
                    label: part.label ?? ""
                    figure: part.figure ?? ""
                    note: part.note ?? ""
                }
            }
        }
        GridLayout {
            Layout.fillWidth: true
            Layout.leftMargin: 18
            Layout.rightMargin: 18
            columns: root.availableWidth > 620 ? 2 : 1
            columnSpacing: 12
            rowSpacing: 12

            Card {
                Layout.fillWidth: true
                Layout.fillHeight: true
                Layout.preferredWidth: 3
                title: root.time?.words.sevenDaysTitle ?? ""

                BarChart {
                    Layout.fillWidth: true
                    Layout.fillHeight: true
                    bars: root.time?.days ?? []
                }
            }
            ShareCard {
                Layout.fillWidth: true
                Layout.fillHeight: true
                Layout.preferredWidth: 2
                title: root.time?.words.byProjectTitle ?? ""
                rows: root.time?.byProject ?? []
                emptyText: root.time?.words.noProjectData ?? ""
                showAll: root.time?.words.showAllButton ?? ""
            }
            ShareCard {
                Layout.fillWidth: true
                Layout.columnSpan: parent.columns
                title: root.time?.words.byTaskTitle ?? ""
                rows: root.time?.byTask ?? []
                emptyText: root.time?.words.noTaskData ?? ""
                showAll: root.time?.words.showAllButton ?? ""
            }
        }
        Label {
            Layout.leftMargin: 18
            text: root.time?.words.recentTitle ?? ""
            font.pixelSize: Theme.heading
            font.weight: Font.DemiBold
            Accessible.role: Accessible.Heading
        }
        LayoutRepeater {
            model: root.time?.recent ?? null

            TimeEntryRow {
                Layout.fillWidth: true
                Layout.leftMargin: 18
                Layout.rightMargin: 18
                onPicked: root.edited(entry)
                onDeleteWanted: root.confirm.ask(root.time.deletion(entry), () => root.time.remove(entry))
            }
        }
        Item {
            implicitHeight: 16
        }
    }
}
