import QtQuick

/// One of the application's symbols, drawn in a colour.
Picture {
    property string name
    property color color: Theme.text

    source: name ? "image://symbol/" + name + "/" + String(color).slice(1) : ""
}
