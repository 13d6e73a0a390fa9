import QtQuick
import QtQuick.Layouts
import QtQuick.Controls
import QuillornStyle

/// Notes, the pinned ones first.
ColumnLayout {
    id: root

    property QtObject notes
    property string current
    property var confirm

    signal opened(string note)

    spacing: 0

    RowLayout {
        Layout.fillWidth: true
        Layout.margins: 10
        spacing: 8

        TextField {
            Layout.fillWidth: true
            Layout.maximumWidth: 280
            symbol: "magnifyingglass"
            placeholderText: root.notes?.searchPrompt ?? ""
            text: root.notes?.searchText ?? ""
            onTextEdited: root.notes.searchText = text
        }
        Label {
            Layout.fillWidth: true
            text: root.notes?.countText ?? ""
            color: Theme.secondaryText
        }
        ToolButton {
            tip: "New Note"
            icon.name: "plus"
            onClicked: {
                const made = root.notes.add();
                if (made)
                    root.opened(made);
            }
        }
    }
    ListView {
        id: list

        Layout.fillWidth: true
        Layout.fillHeight: true
        clip: true
        leftMargin: 8
        rightMargin: 8
        bottomMargin: 16
        activeFocusOnTab: true
        keyNavigationEnabled: true
        currentIndex: -1
        model: root.notes?.rows ?? null
        Accessible.role: Accessible.List
        Accessible.name: "Notes"
        ScrollBar.vertical: ScrollBar {}
        delegate: NoteRow {
            width: list.width - 16
            highlighted: recordId === root.current
            onPicked: {
                list.currentIndex = index;
                root.opened(recordId);
            }
            onPinToggled: root.notes.togglePin(recordId)
            onDeleteWanted: root.confirm.ask(root.notes.deletion(recordId), () => root.notes.remove(recordId))
        }
        Keys.onReturnPressed: currentItem?.picked()
        Keys.onDeletePressed: currentItem?.deleteWanted()

        EmptyState {
            readonly property var state_: root.notes?.emptyState ?? ({})

            anchors.centerIn: parent
            width: Math.min(parent.width - 48, 400)
            visible: title !== ""
            symbol: state_.symbol || "note.text"
            title: state_.title ?? ""
            text: state_.text ?? ""
        }
    }
}
