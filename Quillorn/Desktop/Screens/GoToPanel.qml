import QtQuick
import QtQuick.Layouts
import QuillornStyle

/// Leads to whatever has the name that is typed.
Popup {
    id: root

    readonly property var choices: opened ? Desk.goToChoices(typed.text) : []

    function go(index) {
        const choice = choices[index];
        if (!choice)
            return;
        close();
        Desk.show(choice.kind, choice.record);
    }

    x: Math.round(((parent?.width ?? 0) - width) / 2)
    y: 70
    width: Math.min(560, (parent?.width ?? 600) - 40)
    padding: 8
    modal: true
    focus: true
    onOpened: {
        typed.clear();
        typed.forceActiveFocus(Qt.ShortcutFocusReason);
    }
    contentItem: ColumnLayout {
        spacing: 6

        TextField {
            id: typed

            Layout.fillWidth: true
            symbol: "magnifyingglass"
            placeholderText: Desk.goToWords.prompt
            onAccepted: root.go(list.currentIndex)
            onTextChanged: list.currentIndex = 0
            Keys.onDownPressed: list.step(1)
            Keys.onUpPressed: list.step(-1)
        }
        RowList {
            id: list

            Layout.fillWidth: true
            implicitHeight: Math.min(contentHeight, 380)
            model: root.choices.length
            Accessible.name: Desk.goToWords.prompt
            delegate: ItemDelegate {
                id: row

                required property int index
                readonly property var choice: root.choices[index] ?? ({})

                width: list.width
                implicitHeight: Math.round(34 * Theme.textScale)
                highlighted: ListView.isCurrentItem
                Accessible.name: [choice.title, choice.subtitle].join(", ")
                onClicked: root.go(index)
                contentItem: RowLayout {
                    spacing: 10

                    SymbolIcon {
                        name: row.choice.symbol ?? ""
                        color: Theme.accent
                        size: 15
                    }
                    Label {
                        Layout.fillWidth: true
                        text: row.choice.title ?? ""
                        elide: Text.ElideRight
                    }
                    Label {
                        Layout.maximumWidth: list.width * 0.4
                        text: row.choice.subtitle ?? ""
                        font.pixelSize: Theme.caption
                        color: Theme.secondaryText
                        elide: Text.ElideRight
                    }
                }
            }
        }
        Label {
            Layout.fillWidth: true
            Layout.margins: 8
            visible: root.opened && root.choices.length === 0
            text: Desk.goToWords.nothing
            color: Theme.secondaryText
        }
    }
}
