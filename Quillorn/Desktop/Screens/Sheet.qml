import QtQuick
import QtQuick.Layouts
import QuillornStyle

/// A form over the window. It stays until `save` says that all is well.
Dialog {
    id: root

    property string action: "Save"
    property bool canSave: true
    property string problem
    default property alias fields: column.data

    signal save

    width: 480
    padding: 20
    closePolicy: Popup.CloseOnEscape
    contentItem: ScrollView {
        id: scroll

        implicitHeight: Math.min(column.implicitHeight, 520)
        contentWidth: availableWidth

        ColumnLayout {
            id: column

            // From the beginning: rows that were laid out before stay as they are.
            LayoutMirroring.enabled: Theme.isMirrored
            LayoutMirroring.childrenInherit: true
            // Beside the bar, where there is one.
            width: scroll.availableWidth - (implicitHeight > scroll.height ? 14 : 0)
            spacing: 12
        }
    }
    footer: RowLayout {
        spacing: 8

        Label {
            Layout.fillWidth: true
            Layout.leftMargin: 20
            Layout.preferredHeight: 62
            verticalAlignment: Text.AlignVCenter
            text: root.problem
            color: Theme.red
            elide: Text.ElideRight
            maximumLineCount: 2
            wrapMode: Text.Wrap
            Accessible.role: Accessible.AlertMessage
        }
        Button {
            text: "Cancel"
            onClicked: root.reject()
        }
        Button {
            Layout.rightMargin: 20
            text: root.action
            highlighted: true
            enabled: root.canSave
            onClicked: root.save()
        }
    }
    Shortcut {
        sequences: ["Ctrl+Return", "Ctrl+Enter"]
        enabled: root.opened && root.canSave
        onActivated: root.save()
    }
}
