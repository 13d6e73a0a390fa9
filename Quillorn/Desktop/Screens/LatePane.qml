import QtQuick

/// A pane that fills its column while it has something to show, and is made then. What it shows stays in it while
/// another pane is seen, so that coming back draws nothing anew.
LateTab {
    /// Null while another pane is seen.
    property QtObject offered: null
    property QtObject held: null

    wanted: offered !== null
    onOfferedChanged: if (offered)
        held = offered
}
