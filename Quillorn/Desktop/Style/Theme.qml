pragma Singleton
import QtQuick

/// Colours, measures and type of the whole application. The screens set what the desktop asks for.
QtObject {
    property bool isDark: false
    property bool isHighContrast: false
    property bool isStill: false
    property real textScale: 1

    readonly property color window: isDark ? (isHighContrast ? "#000000" : "#1B1C20") : "#FFFFFF"
    readonly property color sidebar: isDark ? (isHighContrast ? "#0C0C0E" : "#232429") : (isHighContrast ? "#FFFFFF" : "#F3F3F6")
    readonly property color panel: isDark ? (isHighContrast ? "#000000" : "#1F2025") : (isHighContrast ? "#FFFFFF" : "#FAFAFC")
    readonly property color card: isDark ? "#27282E" : "#F5F5F8"
    readonly property color selected: isDark ? "#30355F" : "#E6E9FB"
    readonly property color hovered: isDark ? "#2C2D34" : "#EDEDF2"
    readonly property color text: isDark ? (isHighContrast ? "#FFFFFF" : "#ECECF1") : (isHighContrast ? "#000000" : "#1C1C22")
    readonly property color secondaryText: isHighContrast ? text : isDark ? "#B0B1BC" : "#585965"
    readonly property color tertiaryText: isHighContrast ? text : isDark ? "#A0A1AD" : "#666773"
    readonly property color accent: isDark ? "#A9B2FF" : "#4353C9"
    readonly property color fill: isDark ? "#5565DC" : "#4353C9"
    readonly property color fillText: "#FFFFFF"
    readonly property color line: isHighContrast ? text : isDark ? "#34353C" : "#E2E2E8"
    readonly property color edge: isHighContrast ? text : isDark ? "#787985" : "#8D8E99"
    readonly property color control: isDark ? "#2B2C33" : "#FFFFFF"
    readonly property color danger: red

    readonly property color green: isDark ? "#5CC98A" : "#1B7442"
    readonly property color amber: isDark ? "#E3AE55" : "#8F5400"
    readonly property color orange: isDark ? "#F49B62" : "#A8480A"
    readonly property color red: isDark ? "#FF8582" : "#BE2430"
    readonly property color purple: isDark ? "#C6A0F7" : "#7438BC"
    readonly property color teal: isDark ? "#5CC8D6" : "#0A6A79"
    readonly property color blue: isDark ? "#85B4FF" : "#1F5BC4"
    readonly property color yellow: isDark ? "#D9C052" : "#7E6000"

    readonly property int small: Math.round(11 * textScale)
    readonly property int caption: Math.round(12 * textScale)
    readonly property int body: Math.round(13 * textScale)
    readonly property int heading: Math.round(15 * textScale)
    readonly property int title: Math.round(20 * textScale)
    readonly property int figure: Math.round(24 * textScale)

    readonly property int controlHeight: Math.round(30 * textScale)
    readonly property int controlRadius: 6
    readonly property int rowRadius: 8
    readonly property int cardRadius: 10
    readonly property int motion: isStill ? 0 : 150

    readonly property var shades: ({
            "green": green,
            "amber": amber,
            "orange": orange,
            "red": red,
            "purple": purple,
            "teal": teal,
            "blue": blue,
            "yellow": yellow,
            "accent": accent,
            "primary": text,
            "secondary": secondaryText,
            "tertiary": tertiaryText,
            "gray": secondaryText
        })

    /// The shade that a view model calls by this name; a colour of the user's own ("#RRGGBB") is taken as it is.
    function shade(name) {
        return !name ? text : shades[name] ?? (name.charAt(0) === "#" ? name : text);
    }

    /// For the ground under something of that colour.
    function tint(color, strength) {
        return Qt.rgba(color.r, color.g, color.b, strength ?? (isDark ? 0.22 : 0.13));
    }
}
