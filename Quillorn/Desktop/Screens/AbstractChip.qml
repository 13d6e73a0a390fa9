import QtQuick.Templates

AbstractButton {
    padding: 0
}
