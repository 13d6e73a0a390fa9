import QtQuick

/// The sheets that are open while the desk has something for them.
Item {
    id: root

    function raiseQuickAdd() {
        quickAdd.item.requestActivate();
    }
    function show(sheet, isWanted) {
        if (isWanted && !sheet.item?.opened)
            sheet.made().open();
        else if (!isWanted && sheet.item?.opened)
            sheet.item.close();
    }
    function follow() {
        if (Desk.reminderImport && !reminders.item?.opened)
            Window.window.requestActivate();
        show(reminders, Desk.reminderImport !== null);
        show(recordSheet, Desk.form !== null);
        show(entrySheet, Desk.entry !== null);
    }

    Component.onCompleted: follow()

    Connections {
        target: Desk

        function onChanged() {
            root.follow();
        }
    }
    LatePopup {
        id: recordSheet

        sourceComponent: RecordFormSheet {
            property string saved

            form: Desk.form
            priorities: Desk.priorities
            onSaved: record => saved = record
            onClosed: {
                Desk.closeForm(saved);
                saved = "";
            }
        }
    }
    LatePopup {
        id: entrySheet

        sourceComponent: TimeEntrySheet {
            entry: Desk.entry
            onClosed: Desk.closeEntry()
        }
    }
    LatePopup {
        id: reminders

        sourceComponent: ReminderImportDialog {
            importing: Desk.reminderImport
            priorities: Desk.priorities
            onClosed: Desk.closeReminderImport()
        }
    }
    Loader {
        id: quickAdd

        active: Desk.quickAdd !== null
        sourceComponent: QuickAddWindow {
            quickAdd: Desk.quickAdd
            visible: true
            onDone: Desk.closeQuickAdd()
            onClosing: Desk.closeQuickAdd()
        }
    }
}
