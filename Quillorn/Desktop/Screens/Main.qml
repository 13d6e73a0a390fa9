import QtQuick
import QtQuick.Controls
import QuillornStyle

ApplicationWindow {
    id: window

    readonly property bool isRecovery: Recovery.message !== undefined

    width: 1100
    height: 720
    minimumWidth: 640
    minimumHeight: 400
    visible: true
    title: "Quillorn"
    Component.onCompleted: if (!isRecovery)
        Desk.restore()

    Binding {
        target: Theme
        property: "isDark"
        value: Look.isDark
    }
    Binding {
        target: Theme
        property: "isHighContrast"
        value: Look.isHighContrast
    }
    Binding {
        target: Theme
        property: "isStill"
        value: Look.isStill
    }
    Binding {
        target: Theme
        property: "textScale"
        value: Look.textScale
    }
    Loader {
        anchors.fill: parent
        focus: true
        Keys.onEscapePressed: event => event.accepted = !window.isRecovery && item.back()
        sourceComponent: window.isRecovery ? recovery : main
    }
    Component {
        id: recovery

        RecoveryScreen {
            recovery: Recovery
        }
    }
    Component {
        id: main

        Item {
            function back() {
                return screen.back();
            }

            MainScreen {
                id: screen

                anchors.fill: parent
                confirm: question
                carrier: carried
                onSettingsWanted: Desk.command("settings")
                onMenuWanted: item => menu.made().openUnder(item)
            }
            Carrier {
                id: carried
            }
            Instantiator {
                model: Desk.menu
                delegate: Shortcut {
                    required property var modelData

                    sequence: modelData.keys
                    enabled: modelData.name === "undo" ? Desk.canUndo : modelData.name === "redo" ? Desk.canRedo : true
                    onActivated: Desk.command(modelData.name)
                }
            }
            Shortcut {
                sequence: "F10"
                onActivated: screen.openMenu()
            }
            LatePopup {
                id: menu

                source: "AppMenu.qml"
            }
            LatePopup {
                id: goTo

                source: "GoToPanel.qml"
            }
            LatePopup {
                id: keys

                source: "KeysDialog.qml"
            }
            LatePopup {
                id: question

                readonly property bool opened: item?.opened ?? false

                function ask(question, then, otherwise) {
                    made().ask(question, then, otherwise);
                }

                source: "ConfirmDialog.qml"
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
            Loader {
                id: settings

                function show() {
                    active = true;
                    item.requestActivate();
                }

                active: false
                source: "SettingsWindow.qml"
            }
            Connections {
                target: settings.item

                function onClosing() {
                    settings.active = false;
                }
            }
            Connections {
                target: Desk.sidebar

                function onChanged() {
                    const deletion = Desk.sidebar.deletion;
                    if (deletion.title && !question.opened)
                        question.ask(deletion, () => Desk.sidebar.confirmDeletion(), () => Desk.sidebar.cancelDeletion());
                }
            }
            Connections {
                target: Desk

                function follow(sheet, isWanted) {
                    if (isWanted && !sheet.item?.opened)
                        sheet.made().open();
                    else if (!isWanted && sheet.item?.opened)
                        sheet.item.close();
                }
                function onFailed(words) {
                    toast.show(words);
                }
                function onCommanded(name) {
                    const commands = {
                        "search": () => screen.focusSearch(),
                        "nextColumn": () => screen.nextColumn(),
                        "toggleSidebar": () => screen.toggleSidebar(),
                        "goTo": () => goTo.made().open(),
                        "showKeys": () => keys.made().open(),
                        "settings": () => settings.show(),
                        "quickAdd": () => quickAdd.item.requestActivate(),
                        "quit": () => Qt.quit()
                    };
                    commands[name]();
                }
                function onChanged() {
                    if (Desk.reminderImport && !reminders.item?.opened) {
                        window.requestActivate();
                        reminders.made().open();
                    }
                    follow(recordSheet, Desk.form !== null);
                    follow(entrySheet, Desk.entry !== null);
                    if (Desk.canUndo && Desk.undoTitle !== toast.lastUndo) {
                        toast.lastUndo = Desk.undoTitle;
                        toast.show(Desk.undoTitle.replace("Undo ", ""), "Undo");
                    } else if (!Desk.canUndo) {
                        toast.lastUndo = "";
                    }
                }
            }
            Toast {
                id: toast

                property string lastUndo: Desk.undoTitle

                anchors.horizontalCenter: parent.horizontalCenter
                anchors.bottom: parent.bottom
                anchors.bottomMargin: 20
                onActed: Desk.undo()
            }
        }
    }
}
