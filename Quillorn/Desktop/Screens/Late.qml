import QtQuick

/// A part of the window that is made when it is first wanted, and kept: what nobody looks at costs neither time nor
/// memory. By its `source` not even its file is read before.
Loader {
    property bool wanted: false

    /// The part, made if need be.
    function made() {
        active = true;
        return item;
    }

    active: false
    onWantedChanged: if (wanted)
        active = true
    Component.onCompleted: if (wanted)
        active = true
}
