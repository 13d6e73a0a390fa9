import QtQuick
import QuillornStyle

/// Plain text that can be marked and copied.
TextEdit {
    textFormat: TextEdit.PlainText
    readOnly: true
    selectByMouse: true
    wrapMode: TextEdit.Wrap
    font.pixelSize: Theme.body
    color: Theme.text
    selectionColor: Theme.fill
    selectedTextColor: Theme.fillText
    activeFocusOnTab: true
    selectByKeyboard: true
    Accessible.role: Accessible.EditableText
    Accessible.name: text
    Accessible.readOnly: true

    FocusFrame {
        visible: parent.activeFocus
    }
}
