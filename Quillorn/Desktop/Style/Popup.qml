import QtQuick
import QtQuick.Templates as T

T.Popup {
    id: control

    implicitWidth: contentWidth + leftPadding + rightPadding
    implicitHeight: contentHeight + topPadding + bottomPadding
    padding: 12
    margins: 6
    background: Surface {}
}
