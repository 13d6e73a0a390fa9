import QtQuick

/// A late part with much in it, whose files are read in the background as soon as the window has been drawn.
Late {
    readonly property bool isDrawn: Window.window?.isDrawn ?? false
    /// Held, as files that nobody holds are forgotten.
    property Component document: null

    onIsDrawnChanged: document = Qt.createComponent(source, Component.Asynchronous)
}
