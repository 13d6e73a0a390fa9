import QtQuick
import QtQuick.Layouts
import QuillornStyle

/// The history of all work.
Item {
    id: root

    property QtObject activity
    readonly property var types: activity?.header.types ?? []

    signal opened(int kind, string record)

    SecondsTimer {
        screen: root
        isWanted: root.activity?.hasRunning ?? false
        onTriggered: root.activity.update()
    }

    HeadedList {
        id: list

        anchors.fill: parent
        leftMargin: 16
        rightMargin: 16
        bottomMargin: 16
        reuseItems: true
        model: root.activity?.rows ?? null
        Accessible.name: "Activity"
        onAtYEndChanged: if (atYEnd && root.activity?.hasMore)
            root.activity.showMore()

        header: ColumnLayout {
            width: list.width - 32
            spacing: 12

            RowLayout {
                Layout.fillWidth: true
                Layout.topMargin: 14

                Label {
                    Layout.fillWidth: true
                    text: root.activity?.words.filterLabel ?? ""
                    horizontalAlignment: Text.AlignRight
                    color: Theme.secondaryText
                }
                ComboBox {
                    readonly property var choices: root.activity?.filters ?? []

                    model: choices.map(choice => choice.name)
                    currentIndex: choices.findIndex(choice => choice.id === (root.activity?.filter ?? ""))
                    onActivated: index => root.activity.filter = choices[index].id
                    // To the rows, in whose list it stands; by itself the keyboard would leave them out.
                    Keys.onBacktabPressed: event => {
                        event.accepted = list.currentItem !== null;
                        list.currentItem?.forceActiveFocus(Qt.BacktabFocusReason);
                    }
                    Accessible.name: root.activity?.words.filterLabel ?? ""
                    ToolTip.text: root.activity?.words.filterHelp ?? ""
                    ToolTip.visible: hovered
                    ToolTip.delay: 600
                }
            }
            GridLayout {
                Layout.fillWidth: true
                Layout.bottomMargin: 8
                columns: list.width > 560 * Theme.textScale ? 3 : 1
                columnSpacing: 12
                rowSpacing: 12
                visible: list.count > 0

                FigureCard {
                    Layout.fillHeight: true
                    Layout.preferredWidth: 2
                    Layout.fillWidth: true
                    isHero: true
                    label: root.activity?.words.todayLabel ?? ""
                    figure: root.activity?.header.today ?? ""
                    note: root.activity?.header.line ?? ""
                }
                Card {
                    Layout.fillWidth: true
                    Layout.fillHeight: true
                    Layout.preferredWidth: 4
                    title: root.activity?.words.sevenDaysLabel ?? ""

                    BarChart {
                        Layout.fillWidth: true
                        Layout.fillHeight: true
                        Layout.preferredHeight: 110
                        bars: root.activity?.header.days ?? []
                    }
                }
                Card {
                    Layout.fillWidth: true
                    Layout.fillHeight: true
                    Layout.preferredWidth: 3
                    title: root.activity?.words.byTypeLabel ?? ""

                    LayoutRepeater {
                        model: root.types.length

                        ShareBar {
                            required property int index
                            readonly property var type: root.types[index] ?? ({})

                            Layout.fillWidth: true
                            name: type.label ?? ""
                            figure: type.count ?? ""
                            tone: Theme.shade(type.tone)
                            share: (type.count ?? 0) / Math.max(1, root.activity.header.total)
                        }
                    }
                    Item {
                        Layout.fillHeight: true
                    }
                }
            }
        }
        delegate: ActivityRow {
            width: list.width - 32
            onPicked: root.opened(kind, recordId)
        }

        EmptyState {
            anchors.centerIn: parent
            width: Math.min(parent.width - 48, 400)
            visible: list.count === 0
            symbol: root.activity?.words.emptyIcon ?? ""
            title: root.activity?.words.emptyTitle ?? ""
            text: root.activity?.words.emptyMessage ?? ""
        }
    }
}
