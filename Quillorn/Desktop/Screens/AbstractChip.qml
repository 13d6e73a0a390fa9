import QtQuick
import QtQuick.Templates

AbstractButton {
    padding: 0
    Keys.onReturnPressed: clicked()
}
