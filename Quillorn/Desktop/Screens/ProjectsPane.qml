import QtQuick
import QtQuick.Layouts
import QuillornStyle

/// The projects of a client in their groups.
RowList {
    id: root

    property QtObject record

    signal opened(string project)

    leftMargin: 12
    rightMargin: 12
    topMargin: 12
    bottomMargin: 12
    spacing: 2
    model: record?.projects ?? null
    Accessible.name: record?.words.projectsTitle ?? ""
    delegate: ItemDelegate {
        id: row

        required property string recordId
        required property bool isGroup
        required property bool isInGroup
        required property bool isCollapsed
        required property string name
        required property string tone
        required property string detail
        required property double progress

        width: root.width - 24
        implicitHeight: Math.round((isGroup ? 32 : 44) * Theme.textScale)
        Accessible.name: [name, detail].filter(word => word).join(", ")
        onClicked: isGroup ? root.record.toggleGroup(recordId) : root.opened(recordId)
        contentItem: RowLayout {
            spacing: 10

            Item {
                implicitWidth: row.isInGroup ? 18 : 0
            }
            SymbolIcon {
                visible: row.isGroup
                name: row.isCollapsed ? "chevron.right" : "chevron.down"
                color: Theme.secondaryText
                size: 11
            }
            Rectangle {
                visible: !row.isGroup
                implicitWidth: 10
                implicitHeight: 10
                radius: 5
                color: Theme.shade(row.tone)
            }
            Label {
                Layout.fillWidth: true
                text: row.name
                font.weight: row.isGroup ? Font.DemiBold : Font.Medium
                color: row.isGroup ? Theme.secondaryText : Theme.text
                elide: Text.ElideRight
            }
            Label {
                text: row.detail
                color: Theme.secondaryText
            }
            ProgressBar {
                visible: !row.isGroup
                implicitWidth: 90
                value: row.progress
            }
        }
    }

    EmptyState {
        anchors.centerIn: parent
        width: Math.min(parent.width - 48, 400)
        visible: root.count === 0
        symbol: "folder"
        title: root.record?.words.noProjectsTitle ?? ""
        text: root.record?.words.noProjectsText ?? ""
        action: Desk.titles.newProject
        onActed: Desk.command("newProject")
    }
}
