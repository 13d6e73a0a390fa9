#include <QColor>
#include <QQmlComponent>
#include <QQmlEngine>
#include <cmath>
#include <gtest/gtest.h>

namespace quillorn {
namespace {

double luminance(const QColor& color) {
    const auto linear = [](double part) {
        return part <= 0.03928 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) + 0.0722 * linear(color.blueF());
}

double contrast(const QColor& one, const QColor& other) {
    const auto [dark, light] = std::minmax({luminance(one), luminance(other)});
    return (light + 0.05) / (dark + 0.05);
}

QColor mixed(const QColor& over, const QColor& ground) {
    const auto mix = [&](float a, float b) { return a * over.alphaF() + b * (1 - over.alphaF()); };
    return QColor::fromRgbF(mix(over.redF(), ground.redF()), mix(over.greenF(), ground.greenF()),
                            mix(over.blueF(), ground.blueF()));
}

TEST(Palettes, areReadable) {
    const QStringList tones{"accent", "green", "amber", "orange", "red", "purple", "teal", "blue", "yellow"};
    const QStringList papers{"window", "panel", "card", "surface"};
    const QStringList grounds = papers + QStringList{"sidebar", "control", "hovered", "selected"};
    const struct {
        QStringList colors, grounds;
        bool isText;
    } table[] = {
        {tones + QStringList{"text", "secondaryText", "tertiaryText"}, grounds, true},
        {{"window", "inverseAccent"}, {"inverse"}, true},
        {{"fillText"}, {"fill"}, true},
        {{"edge"}, grounds, false},
        {tones, {"track"}, false},
        {{"fill"}, papers, false},
    };
    QQmlEngine engine;
    engine.addImportPath("qrc:/qml");
    QQmlComponent component(&engine);
    component.setData("import QtQml; import QuillornStyle; QtObject { property QtObject theme: Theme }", {});
    const std::unique_ptr<QObject> holder(component.create());
    ASSERT_NE(holder, nullptr) << component.errorString().toStdString();
    auto& theme = *holder->property("theme").value<QObject*>();
    const auto color = [&](const QString& name) { return theme.property(name.toLatin1()).value<QColor>(); };
    for (const auto& [isDark, isHigh] : {std::pair(false, false), {true, false}, {false, true}, {true, true}}) {
        theme.setProperty("isDark", isDark);
        theme.setProperty("isHighContrast", isHigh);
        const auto check = [&](const QString& name, const QString& on, const QColor& ground, bool isText) {
            EXPECT_GE(contrast(color(name), ground), !isText  ? 3
                                                     : isHigh ? 7
                                                              : 4.5)
                << name.toStdString() << " on " << on.toStdString() << (isDark ? ", dark" : "")
                << (isHigh ? ", high" : "");
        };
        for (const auto& row : table)
            for (const QString& name : row.colors)
                for (const QString& ground : row.grounds)
                    check(name, ground, color(ground), row.isText);
        for (const QString& tone : tones + QStringList{"text", "secondaryText"})
            for (const QString& paper : papers) {
                QVariant tint;
                QMetaObject::invokeMethod(&theme, "tint", Q_RETURN_ARG(QVariant, tint), Q_ARG(QVariant, color(tone)),
                                          Q_ARG(QVariant, {}));
                check(tone, "its tint on " + paper, mixed(tint.value<QColor>(), color(paper)), true);
            }
    }
}

} // namespace
} // namespace quillorn
