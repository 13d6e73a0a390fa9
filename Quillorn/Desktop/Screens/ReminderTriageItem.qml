import QtQuick
import QtQuick.Layouts
import QuillornStyle

/// A reminder with what is to become of it.
Item {
    id: root

    required property int index
    required property string title
    required property string source
    required property var remarks
    required property string skipReason
    required property var project
    required property int priority
    required property bool isIncluded
    property QtObject importing
    property var priorities: []

    implicitHeight: column.implicitHeight + 28

    Rectangle {
        width: parent.width
        height: 1
        color: Theme.line
    }
    RowLayout {
        anchors.fill: parent
        anchors.leftMargin: 20
        anchors.rightMargin: 20
        anchors.topMargin: 14
        spacing: 12

        CheckBox {
            Layout.alignment: Qt.AlignTop
            Layout.topMargin: 3
            Accessible.name: root.title
            checked: root.isIncluded
            onToggled: root.importing.setIncluded(root.index, checked)
        }
        ColumnLayout {
            id: column

            Layout.fillWidth: true
            Layout.alignment: Qt.AlignTop
            spacing: 8

            RowLayout {
                Layout.fillWidth: true
                spacing: 8

                TextField {
                    Layout.fillWidth: true
                    Layout.minimumWidth: 120
                    placeholderText: root.importing?.words.titlePrompt ?? ""
                    text: root.title
                    onTextEdited: root.importing.setTitle(root.index, text)
                }
                RecordCombo {
                    Layout.preferredWidth: 210
                    records: root.importing?.projects ?? []
                    none: root.importing?.words.noProject ?? ""
                    chosen: root.project ?? ""
                    onPicked: record => root.importing.setProject(root.index, record)
                    Accessible.name: (root.importing?.words.projectLabel ?? "") + ", " + root.title
                }
                ComboBox {
                    Layout.preferredWidth: 112
                    model: root.priorities
                    currentIndex: root.priority
                    onActivated: index => root.importing.setPriority(root.index, index)
                    Accessible.name: (root.importing?.words.priorityLabel ?? "") + ", " + root.title
                }
            }
            RowLayout {
                Layout.fillWidth: true
                spacing: 6

                SymbolIcon {
                    name: "bell"
                    color: Theme.secondaryText
                    size: 12
                }
                Label {
                    Layout.maximumWidth: column.width * 0.5
                    text: root.source
                    font.pixelSize: Theme.caption
                    color: Theme.secondaryText
                    elide: Text.ElideRight
                }
                Label {
                    Layout.fillWidth: root.skipReason === ""
                    text: root.remarks.filter(each => each !== root.skipReason).join(" ")
                    font.pixelSize: Theme.caption
                    color: Theme.secondaryText
                    elide: Text.ElideRight
                }
                Badge {
                    visible: root.skipReason !== ""
                    text: root.skipReason
                    tone: Theme.amber
                }
                Item {
                    Layout.fillWidth: root.skipReason !== ""
                }
            }
        }
    }
}
