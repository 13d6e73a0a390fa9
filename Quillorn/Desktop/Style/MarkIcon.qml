import QtQuick

/// An emoji that says how urgent something is.
Picture {
    property string mark

    visible: mark !== ""
    size: Theme.caption + 3
    source: mark ? "image://mark/" + encodeURIComponent(mark) : ""
}
