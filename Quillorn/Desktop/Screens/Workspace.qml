import QtQuick

/// The three columns with all that comes over them: menus, sheets, questions and messages.
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
    LateDocument {
        id: sheets

        anchors.fill: parent
        wanted: [Desk.form, Desk.entry, Desk.reminderImport, Desk.quickAdd].some(shown => shown)
        source: "Sheets.qml"
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
                "quickAdd": () => sheets.item.raiseQuickAdd(),
                "quit": () => Qt.quit()
            };
            commands[name]();
        }
        function onChanged() {
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
