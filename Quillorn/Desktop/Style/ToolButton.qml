import QtQuick

/// A button that is a symbol only; its tip is its name.
Button {
    property string tip

    flat: true
    Accessible.name: text || tip
    ToolTip.text: tip
    ToolTip.visible: (hovered || visualFocus) && tip !== ""
    ToolTip.delay: 600
}
