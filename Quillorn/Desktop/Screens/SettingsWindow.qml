import QtQuick
import QtQuick.Layouts
import QuillornStyle

/// The settings, a tab at a time.
ApplicationWindow {
    id: root

    property var confirm

    width: 760
    height: 520
    minimumWidth: 560
    minimumHeight: 380
    title: "Quillorn Settings"
    visible: true

    RowLayout {
        anchors.fill: parent
        spacing: 0

        Rectangle {
            Layout.fillHeight: true
            implicitWidth: 180
            color: Theme.sidebar

            ColumnLayout {
                anchors.fill: parent
                anchors.margins: 8
                anchors.topMargin: 12
                spacing: 2

                LayoutRepeater {
                    model: Desk.settingsTabs.tabs

                    ItemDelegate {
                        id: tab

                        required property var modelData
                        required property int index

                        Layout.fillWidth: true
                        highlighted: Desk.settingsTabs.selected === index
                        Accessible.name: modelData.label
                        Accessible.role: Accessible.PageTab
                        onClicked: Desk.settingsTabs.selected = index
                        contentItem: RowLayout {
                            spacing: 10

                            SymbolIcon {
                                name: tab.modelData.symbol
                                color: tab.highlighted ? Theme.accent : Theme.secondaryText
                            }
                            Label {
                                Layout.fillWidth: true
                                text: tab.modelData.label
                                font.weight: tab.highlighted ? Font.DemiBold : Font.Normal
                            }
                        }
                    }
                }
                Item {
                    Layout.fillHeight: true
                }
            }
        }
        ScrollView {
            id: scroll

            Layout.fillWidth: true
            Layout.fillHeight: true
            contentWidth: availableWidth

            Loader {
                x: 24
                y: 24
                width: scroll.availableWidth - 48
                height: item?.implicitHeight ?? 0
                sourceComponent: [general, api, sync, backup, notifications, ai, reminders][Desk.settingsTabs.selected] ?? null
            }
        }
    }
    Shortcut {
        sequences: [StandardKey.Close, "Escape"]
        onActivated: root.close()
    }
    Component {
        id: general

        GeneralSettingsPane {
            settings: Desk.generalSettings
            desktop: Desk.desktopSettings
        }
    }
    Component {
        id: api

        APISettingsPane {
            settings: Desk.apiSettings
        }
    }
    Component {
        id: sync

        SyncSettingsPane {
            settings: Desk.syncSettings
        }
    }
    Component {
        id: backup

        BackupSettingsPane {
            settings: Desk.backupSettings
        }
    }
    Component {
        id: notifications

        NotificationSettingsPane {
            settings: Desk.notificationSettings
        }
    }
    Component {
        id: ai

        AISettingsPane {
            ai: Desk.aiSettings
        }
    }
    Component {
        id: reminders

        ReminderSettingsPane {
            settings: Desk.reminderSettings
        }
    }
}
