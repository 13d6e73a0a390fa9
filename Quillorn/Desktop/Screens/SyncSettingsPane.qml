import QtQuick
import QtQuick.Layouts
import QuillornStyle

ColumnLayout {
    id: root

    property QtObject settings

    spacing: 12

    PaneTitle {
        symbol: root.settings.words.titleSymbol
        text: root.settings.words.title
    }
    FormRow {
        label: root.settings.words.statusLabel

        SymbolIcon {
            name: root.settings.symbol
            color: Theme.secondaryText
        }
        Label {
            text: root.settings.status
        }
    }
    FormRow {
        label: root.settings.words.networkLabel

        Label {
            text: root.settings.network
        }
    }
    FormRow {
        label: root.settings.words.lastSyncedLabel
        visible: root.settings.lastSynced !== ""

        Label {
            text: root.settings.lastSynced
        }
    }
}
