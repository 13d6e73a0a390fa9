import QtQuick
import QuillornStyle

/// Markdown of a note or a model. It fetches nothing, and a link opens on a click only, in the user's browser or mail
/// program.
TextEdit {
    property string source

    text: source
    textFormat: TextEdit.MarkdownText
    readOnly: true
    selectByMouse: true
    wrapMode: TextEdit.Wrap
    font.family: "Inter"
    font.pixelSize: Theme.body
    color: Theme.text
    selectionColor: Theme.fill
    selectedTextColor: Theme.fillText
    palette.link: Theme.accent
    onLinkActivated: link => {
        if (/^(https?|mailto):/i.test(link))
            Qt.openUrlExternally(link);
    }

    HoverHandler {
        cursorShape: parent.hoveredLink ? Qt.PointingHandCursor : Qt.IBeamCursor
    }
}
