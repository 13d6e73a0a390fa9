import QtQuick

/// Keeps what has the keyboard, or the cursor in it, within sight of a view that scrolls.
QtObject {
    id: root

    property Flickable view
    readonly property Item focused: view?.Window.activeFocusItem ?? null
    readonly property rect cursor: focused?.cursorRectangle ?? Qt.rect(0, 0, 0, 0)
    readonly property int margin: 8

    function holds(item) {
        for (; item; item = item.parent)
            if (item === view.contentItem)
                return true;
        return false;
    }
    function follow() {
        if (!focused || focused === view || !holds(focused))
            return;
        const part = focused.height > view.height ? cursor : Qt.rect(0, 0, focused.width, focused.height);
        const top = focused.mapToItem(view.contentItem, 0, part.y).y;
        if (top < view.contentY)
            view.contentY = Math.max(view.originY - view.topMargin, top - margin);
        else if (top + part.height > view.contentY + view.height)
            view.contentY = top + Math.min(part.height + margin - view.height, -margin);
    }

    onFocusedChanged: Qt.callLater(follow)
    onCursorChanged: Qt.callLater(follow)
}
