import QtQuick
import QtQuick.Layouts
import QuillornStyle

/// What a client or a project is, and its figures.
ScrollView {
    id: root

    property QtObject record
    property var confirm

    contentWidth: availableWidth

    ColumnLayout {
        width: root.availableWidth
        spacing: 14

        RowLayout {
            Layout.fillWidth: true
            Layout.margins: 18
            Layout.bottomMargin: 0
            spacing: 8

            PlainEditor {
                Layout.fillWidth: true
                isOneLine: true
                font.pixelSize: Theme.title
                font.weight: Font.DemiBold
                placeholderText: "Name"
                stored: root.record?.name ?? ""
                onTyped: text => root.record.typeName(text)
                onFinished: root.record?.leave()
                onReverted: root.record.revert()
            }
            Button {
                text: root.record?.archiveButton ?? ""
                icon.name: "archivebox"
                onClicked: root.record.toggleArchived()
            }
            ToolButton {
                tip: "Delete"
                icon.name: "trash"
                onClicked: root.confirm.ask(root.record.deletion(), () => root.record.remove())
            }
        }
        ChangedElsewhere {
            Layout.leftMargin: 22
            visible: text !== ""
            text: root.record?.warning ?? ""
            onReverted: root.record.revert()
        }
        Label {
            Layout.leftMargin: 22
            visible: text !== ""
            text: root.record?.error ?? ""
            color: Theme.red
        }
        PlainEditor {
            Layout.fillWidth: true
            Layout.leftMargin: 18
            Layout.rightMargin: 18
            placeholderText: "Description"
            stored: root.record?.description ?? ""
            onTyped: text => root.record.typeDescription(text)
            onFinished: root.record?.leave()
            onReverted: root.record.revert()
        }
        GridLayout {
            Layout.fillWidth: true
            Layout.leftMargin: 18
            Layout.rightMargin: 18
            columns: Math.max(2, Math.min(5, Math.floor(root.availableWidth / 160)))
            columnSpacing: 12
            rowSpacing: 12

            LayoutRepeater {
                model: root.record?.figures ?? []

                FigureCard {
                    required property var modelData
                    required property int index

                    Layout.fillWidth: true
                    Layout.fillHeight: true
                    Layout.preferredWidth: 1
                    isHero: index === 0
                    label: modelData.label
                    figure: modelData.figure
                    note: modelData.note
                }
            }
        }
        ProgressBar {
            Layout.fillWidth: true
            Layout.leftMargin: 18
            Layout.rightMargin: 18
            visible: root.record?.isProject ?? false
            value: root.record?.progress ?? 0
        }
    }
}
