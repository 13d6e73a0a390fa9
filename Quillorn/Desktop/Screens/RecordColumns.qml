import QtQuick
import QtQuick.Layouts

/// The middle columns that show neither tasks nor one client or project.
ColumnLayout {
    id: root

    property var confirm

    spacing: 0

    LatePane {
        id: notesPane

        offered: Desk.column === "allNotes" ? Desk.notes : null
        sourceComponent: NoteListPane {
            notes: notesPane.held
            confirm: root.confirm
            current: Desk.selectedNote
            onOpened: note => Desk.selectNote(note)
        }
    }
    LatePane {
        id: summaryPane

        offered: Desk.summary
        sourceComponent: SummaryPane {
            summary: summaryPane.held
            onTaskOpened: task => Desk.selectTask(task)
            onNoteOpened: note => Desk.selectNote(note)
        }
    }
    LatePane {
        id: activityPane

        offered: Desk.activity
        sourceComponent: ActivityPane {
            activity: activityPane.held
            onOpened: (kind, record) => Desk.showActivity(kind, record)
        }
    }
}
