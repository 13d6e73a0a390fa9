import QtQuick
import QuillornStyle

/// Markdown of a note or a model. It fetches nothing, and a link opens on a click only, in the user's browser or mail
/// program.
TextEdit {
    property string source
    /// What it is, for those who can't see where it stands.
    property string label

    function follow(link) {
        if (/^(https?|mailto):/i.test(link))
            Qt.openUrlExternally(link);
    }

    text: source
    textFormat: TextEdit.MarkdownText
    readOnly: true
    selectByMouse: true
    wrapMode: TextEdit.Wrap
    font.pixelSize: Theme.body
    color: Theme.text
    selectionColor: Theme.fill
    selectedTextColor: Theme.fillText
    palette.link: Theme.accent
    activeFocusOnTab: true
    selectByKeyboard: true
    Accessible.role: Accessible.EditableText
    Accessible.name: label
    Accessible.readOnly: true
    onLinkActivated: link => follow(link)
    // The link at the cursor.
    Keys.onReturnPressed: follow(linkAt(cursorRectangle.x, cursorRectangle.y + cursorRectangle.height / 2))

    FocusFrame {
        visible: parent.activeFocus
    }
    HoverHandler {
        cursorShape: parent.hoveredLink ? Qt.PointingHandCursor : Qt.IBeamCursor
    }
}
