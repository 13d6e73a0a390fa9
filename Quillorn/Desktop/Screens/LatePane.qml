import QtQuick
import QtQuick.Layouts

/// A pane that fills its column while it is wanted, and is made then.
Late {
    Layout.fillWidth: true
    Layout.fillHeight: true
    visible: wanted
}
