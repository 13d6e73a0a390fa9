import QtQuick
import QtQuick.Layouts
import QuillornStyle

/// The cards over a smart list; nothing over others.
ColumnLayout {
    id: root

    property var dashboard: ({})
    // For the words of both cards the second one loses its symbol, then the first one too.
    readonly property bool isTight: width < 440 * Theme.textScale
    readonly property bool isNarrow: width < 380 * Theme.textScale
    readonly property bool isShown: dashboard.hero !== undefined

    spacing: 12
    visible: isShown
    height: isShown ? implicitHeight : 0

    RowLayout {
        Layout.fillWidth: true
        Layout.margins: 8
        Layout.topMargin: 16
        Layout.bottomMargin: 4
        spacing: 12

        LayoutRepeater {
            model: [root.dashboard.hero, root.dashboard.overdue].filter(card => card)

            Rectangle {
                id: card

                required property var modelData
                required property int index
                readonly property bool isHero: index === 0

                Layout.fillWidth: true
                Layout.preferredWidth: isHero && !root.isNarrow ? 3 : 2
                implicitHeight: Math.round(72 * Theme.textScale)
                radius: Theme.cardRadius
                color: isHero ? Theme.fill : Theme.card
                border.color: isHero ? Theme.fill : Theme.line
                Accessible.role: Accessible.StaticText
                Accessible.name: [modelData.value, modelData.title, modelData.text].filter(word => word).join(" ")

                RowLayout {
                    anchors.fill: parent
                    anchors.margins: 14
                    spacing: 12

                    Rectangle {
                        visible: card.isHero ? !root.isNarrow : !root.isTight
                        implicitWidth: 36
                        implicitHeight: 36
                        radius: 8
                        color: card.isHero ? "#33FFFFFF" : Theme.tint(Theme.red)

                        SymbolIcon {
                            anchors.centerIn: parent
                            name: card.modelData.symbol
                            color: card.isHero ? Theme.fillText : Theme.red
                            size: 18
                        }
                    }
                    ColumnLayout {
                        Layout.fillWidth: true
                        spacing: 1

                        RowLayout {
                            spacing: 7

                            Label {
                                visible: text !== ""
                                text: card.modelData.value
                                font.pixelSize: Theme.title
                                font.weight: Font.DemiBold
                                color: card.isHero ? Theme.fillText : Theme.red
                            }
                            Label {
                                Layout.fillWidth: true
                                text: card.modelData.title
                                font.pixelSize: card.isHero ? Theme.heading + 2 : Theme.body
                                font.weight: Font.DemiBold
                                color: card.isHero ? Theme.fillText : Theme.text
                                elide: Text.ElideRight
                            }
                        }
                        Label {
                            Layout.fillWidth: true
                            text: card.modelData.text
                            color: card.isHero ? Theme.fillText : Theme.secondaryText
                            elide: Text.ElideRight
                        }
                    }
                }
            }
        }
    }
    Late {
        Layout.fillWidth: true
        Layout.leftMargin: 8
        Layout.rightMargin: 8
        wanted: (root.dashboard.breakdowns ?? []).length > 0
        visible: wanted
        source: "Breakdowns.qml"
        onLoaded: item.breakdowns = Qt.binding(() => root.dashboard.breakdowns ?? [])
    }
}
