import QtQuick
import QtQuick.Templates as T

T.Label {
    color: enabled ? Theme.text : Theme.tertiaryText
    linkColor: Theme.accent
    font.pixelSize: Theme.body
    textFormat: Text.PlainText
}
