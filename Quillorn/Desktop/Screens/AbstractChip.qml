import QtQuick
import QtQuick.Templates

AbstractButton {
    padding: 0
    Accessible.onPressAction: clicked()
    Keys.onReturnPressed: clicked()
}
