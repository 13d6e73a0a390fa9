import QtQuick
import QtQuick.Layouts
import QuillornStyle

/// How the tasks of a smart list are spread: each breakdown on a card, by shares, or by days where there is one alone.
RowLayout {
    id: root

    property var breakdowns: []

    spacing: 12

    LayoutRepeater {
        model: root.breakdowns

        Card {
            id: breakdown

            required property var modelData
            readonly property bool isForecast: root.breakdowns.length === 1
            readonly property real most: modelData.bars.reduce((sum, bar) => Math.max(sum, bar.value), 1)

            Layout.fillWidth: true
            Layout.preferredWidth: 1
            Layout.alignment: Qt.AlignTop
            title: modelData.title

            BarChart {
                Layout.fillWidth: true
                visible: breakdown.isForecast
                bars: breakdown.isForecast ? breakdown.modelData.bars : []
                Layout.preferredHeight: 110
            }
            LayoutRepeater {
                model: breakdown.isForecast ? [] : breakdown.modelData.bars

                ShareBar {
                    required property var modelData

                    Layout.fillWidth: true
                    name: modelData.label
                    figure: modelData.text
                    share: modelData.value / breakdown.most
                    hasDot: false
                }
            }
            Label {
                visible: breakdown.modelData.bars.length === 0
                text: breakdown.modelData.emptyText
                color: Theme.secondaryText
            }
        }
    }
}
