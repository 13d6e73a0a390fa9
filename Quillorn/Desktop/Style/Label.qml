import QtQuick

Text {
    color: enabled ? Theme.text : Theme.tertiaryText
    linkColor: Theme.accent
    font.pixelSize: Theme.body
    textFormat: Text.PlainText
    horizontalAlignment: Text.AlignLeft
}
