import QtQuick
import QtQuick.Templates as T

T.Menu {
    id: control

    /// For a menu that is opened by a key: under its row, at the first thing to do.
    function openUnder(item) {
        popup(item, 12, item.height);
        currentIndex = 0;
    }

    implicitWidth: Math.max(contentItem.implicitWidth + leftPadding + rightPadding, 180)
    implicitHeight: contentItem.implicitHeight + topPadding + bottomPadding
    padding: 4
    margins: 4
    overlap: 2
    delegate: MenuItem {}
    contentItem: ListView {
        implicitHeight: contentHeight
        implicitWidth: {
            let widest = 0;
            for (let i = 0; i < control.count; ++i)
                widest = Math.max(widest, control.itemAt(i)?.implicitWidth ?? 0);
            return widest;
        }
        model: control.contentModel
        interactive: contentHeight > height
        clip: interactive
        currentIndex: control.currentIndex
    }
    background: Surface {}
}
