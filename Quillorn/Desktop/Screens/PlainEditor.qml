import QtQuick
import QuillornStyle

/// A text that is edited in place as plain text: what is typed is told at once, and kept when the field is left. What
/// is stored shows only while nobody types.
TextArea {
    id: root

    property string stored
    property bool isOneLine: false
    /// Whether there is something to keep or to revert.
    property bool isTyped: false

    signal typed(string text)
    signal finished
    signal reverted

    implicitHeight: contentHeight + topPadding + bottomPadding
    padding: 4
    text: stored
    onStoredChanged: if (text !== stored)
        text = stored
    onTextChanged: if (activeFocus && text !== stored) {
        isTyped = true;
        typed(text);
    }
    onActiveFocusChanged: if (!activeFocus)
        finished()
    onFinished: isTyped = false
    onReverted: isTyped = false
    Keys.onReturnPressed: event => {
        if (isOneLine)
            finished();
        else
            event.accepted = false;
    }
    // Takes back what was typed; with nothing typed it is the window's.
    Keys.onEscapePressed: event => {
        event.accepted = isTyped;
        if (isTyped)
            reverted();
    }
    background: Rectangle {
        radius: Theme.controlRadius
        color: root.activeFocus ? Theme.control : "transparent"
        border.width: root.activeFocus ? 2 : root.hovered ? 1 : 0
        border.color: root.activeFocus ? Theme.accent : Theme.line
    }
}
