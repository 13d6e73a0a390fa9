import QtQuick
import QtQuick.Layouts

/// A tab's pane, made when the tab is first seen.
Late {
    Layout.fillWidth: true
    Layout.fillHeight: true
    visible: wanted
}
