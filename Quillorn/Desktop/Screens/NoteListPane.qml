import QtQuick
import QtQuick.Layouts
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
            tip: Desk.titles.newNote
            icon.name: "plus"
            onClicked: {
                const made = root.notes.add();
                if (made)
                    root.opened(made);
            }
        }
    }
    RowList {
        id: list

        Layout.fillWidth: true
        Layout.fillHeight: true
        leftMargin: 8
        rightMargin: 8
        bottomMargin: 16
        model: root.notes?.rows ?? null
        Accessible.name: "Notes"
        delegate: NoteRow {
            width: list.width - 16
            highlighted: recordId === root.current
            onPicked: {
                list.currentIndex = index;
                list.forceActiveFocus();
                root.opened(recordId);
            }
            onPinToggled: root.notes.togglePin(recordId)
            onDeleteWanted: root.confirm.ask(root.notes.deletion(recordId), () => root.notes.remove(recordId))
        }
        onMenuWanted: row => row.openMenu()
        onRowPressed: (event, row) => {
            event.accepted = event.key === Qt.Key_Delete;
            if (event.accepted)
                row.deleteWanted();
        }

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
