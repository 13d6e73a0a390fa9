pragma Singleton
import QtQuick

/// Colours, measures and type of the whole application. The screens set what the desktop asks for.
QtObject {
    property bool isDark: false
    property bool isHighContrast: false
    property bool isStill: false
    property real textScale: 1
    readonly property bool isMirrored: Qt.application.layoutDirection === Qt.RightToLeft

    readonly property color window: pick("#FFFFFF", "#1B1C20", "#FFFFFF", "#000000")
    readonly property color sidebar: pick("#F3F3F6", "#232429", "#FFFFFF", "#000000")
    readonly property color panel: pick("#FAFAFC", "#1F2025", "#FFFFFF", "#000000")
    readonly property color card: pick("#F5F5F8", "#27282E", "#FFFFFF", "#000000")
    readonly property color surface: pick("#FFFFFF", "#2A2B31", "#FFFFFF", "#000000")
    readonly property color control: pick("#FFFFFF", "#2B2C33", "#FFFFFF", "#000000")
    readonly property color selected: pick("#E6E9FB", "#30355F", "#DDE2FF", "#2A2F66")
    readonly property color hovered: pick("#EDEDF2", "#2C2D34", "#E8E8EE", "#2A2A2E")
    readonly property color text: pick("#1C1C22", "#ECECF1", "#000000", "#FFFFFF")
    readonly property color secondaryText: pick("#585965", "#B0B1BC", "#000000", "#FFFFFF")
    readonly property color tertiaryText: pick("#666773", "#A0A1AD", "#42424C", "#C8C8D2")
    readonly property color accent: pick("#4353C9", "#A9B2FF", "#2F3DA4", "#B8C0FF")
    readonly property color fill: pick("#4353C9", "#5B6BE0", "#2F3DA4", "#B8C0FF")
    readonly property color fillText: pick("#FFFFFF", "#FFFFFF", "#FFFFFF", "#000000")
    readonly property color line: pick("#E2E2E8", "#34353C", "#000000", "#FFFFFF")
    /// Under a bar that shows a share.
    readonly property color track: pick("#E2E2E8", "#34353C", "#D5D5DE", "#3F3F48")
    readonly property color edge: pick("#83848F", "#82838F", "#000000", "#FFFFFF")
    /// The ground of what stands over the window for a moment; the colour of its text is that of the window.
    readonly property color inverse: pick("#2C2D33", "#E4E4EA", "#000000", "#FFFFFF")
    readonly property color inverseAccent: pick("#B4BCFF", "#3442B4", "#B4BCFF", "#24308C")
    /// Of the line around what is selected, where its ground alone doesn't say it well enough.
    readonly property int outline: isHighContrast ? 1 : 0

    readonly property color green: pick("#1B7442", "#5CC98A", "#13532F", "#80D5A4")
    readonly property color amber: pick("#8F5400", "#E3AE55", "#6A3E00", "#E8BD75")
    readonly property color orange: pick("#A8480A", "#F49B62", "#7A3407", "#F7B68C")
    readonly property color red: pick("#BE2430", "#FF8582", "#8D1B24", "#FFAFAD")
    readonly property color purple: pick("#7438BC", "#C6A0F7", "#5E2D99", "#D4B8F9")
    readonly property color teal: pick("#0A6A79", "#5CC8D6", "#08505C", "#79D2DD")
    readonly property color blue: pick("#1F5BC4", "#85B4FF", "#184595", "#A2C6FF")
    readonly property color yellow: pick("#7E6000", "#D9C052", "#5A4500", "#DBC35A")

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

    function pick(light, dark, strongLight, strongDark) {
        if (isHighContrast)
            return isDark ? strongDark : strongLight;
        return isDark ? dark : light;
    }

    /// The shade that a view model calls by this name; a colour of the user's own ("#RRGGBB") is taken as it is.
    function shade(name) {
        return !name ? text : shades[name] ?? (name.charAt(0) === "#" ? name : text);
    }

    /// For the ground under something of that colour.
    function tint(color, strength) {
        return Qt.rgba(color.r, color.g, color.b, strength ?? (isDark ? 0.16 : 0.1));
    }
}
