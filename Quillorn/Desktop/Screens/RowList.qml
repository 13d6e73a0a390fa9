import QtQuick
import QuillornStyle

/// A list that is one stop of the Tab key; arrow keys lead from row to row in it, past headings.
ListView {
    id: root

    /// A key that is none of the list's own; who takes it accepts the event.
    signal rowPressed(var event, Item row)
    signal menuWanted(Item row)

    function step(by) {
        let next = currentIndex + by;
        while (itemAtIndex(next)?.isHeading)
            next += by;
        if (next >= 0 && next < count)
            currentIndex = next;
    }
    function page(by) {
        const rows = Math.max(1, Math.floor(height / (currentItem?.height || height)) - 1);
        currentIndex = Math.max(0, Math.min(count - 1, currentIndex + by * rows));
        if (currentItem?.isHeading)
            step(currentIndex === 0 ? 1 : by);
    }
    /// The keyboard comes in, and begins at the first row unless it was here.
    function begin() {
        if (activeFocus && currentIndex < 0)
            step(1);
    }

    clip: true
    activeFocusOnTab: true
    currentIndex: -1
    highlightMoveDuration: 0
    cacheBuffer: Window.window?.isDrawn ? 400 : 0
    Accessible.role: Accessible.List
    ScrollBar.vertical: ScrollBar {}
    onActiveFocusChanged: begin()
    onCountChanged: Qt.callLater(begin)
    Keys.onPressed: event => {
        if (currentItem)
            rowPressed(event, currentItem);
        if (event.accepted || (event.modifiers & (Qt.AltModifier | Qt.ControlModifier)))
            return;
        event.accepted = true;
        if (event.key === Qt.Key_Down)
            step(1);
        else if (event.key === Qt.Key_Up)
            step(-1);
        else if (event.key === Qt.Key_PageDown)
            page(1);
        else if (event.key === Qt.Key_PageUp)
            page(-1);
        else if (event.key === Qt.Key_Home)
            page(-count);
        else if (event.key === Qt.Key_End)
            page(count);
        else if (currentItem && (event.key === Qt.Key_Menu || (event.key === Qt.Key_F10 && event.modifiers & Qt.ShiftModifier)))
            menuWanted(currentItem);
        else
            event.accepted = false;
    }

    // In front of the rows and hardly there. The software renderer works with the places of all items that move, and in
    // a frame of scrolling those of some hundred; one that moves before them and covers all makes them a single one.
    Rectangle {
        parent: root.contentItem
        z: 2
        x: root.contentX
        y: root.contentY
        width: root.width
        height: root.height
        color: "#01808080"
        Accessible.ignored: true
    }
}
