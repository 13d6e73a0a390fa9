#pragma once

#include <QByteArray>
#include <QDBusArgument>
#include <QDBusVariant>
#include <QList>
#include <QString>
#include <QVariantMap>
#include <tuple>

namespace quillorn {

// What the tray's item and its menu send and receive.

/// (iiay): an image of four bytes a point (alpha, red, green, blue).
struct TrayPixmap {
    int width = 0;
    int height = 0;
    QByteArray bytes{};

    auto members() { return std::tie(width, height, bytes); }
};
using TrayPixmaps = QList<TrayPixmap>;

/// (sa(iiay)ss): an icon of that name or these images, a title and a text.
struct TrayToolTip {
    QString icon{};
    TrayPixmaps images{};
    QString title{};
    QString text{};

    auto members() { return std::tie(icon, images, title, text); }
};

/// (ia{sv})
struct TrayMenuRow {
    int id = 0;
    QVariantMap properties{};

    auto members() { return std::tie(id, properties); }
};

/// (isvu)
struct TrayMenuEvent {
    int id = 0;
    QString event{};
    QDBusVariant data{};
    uint time = 0;

    auto members() { return std::tie(id, event, data, time); }
};

template <typename Type>
concept TrayStructure = requires(Type& value) { value.members(); };

template <TrayStructure Type>
QDBusArgument& operator<<(QDBusArgument& argument, Type value) {
    argument.beginStructure();
    std::apply([&](const auto&... members) { (argument << ... << members); }, value.members());
    argument.endStructure();
    return argument;
}

template <TrayStructure Type>
const QDBusArgument& operator>>(const QDBusArgument& argument, Type& value) {
    argument.beginStructure();
    std::apply([&](auto&... members) { (argument >> ... >> members); }, value.members());
    argument.endStructure();
    return argument;
}

/// (ia{sv}av), where each child is such a node again.
struct TrayMenuNode {
    int id = 0;
    QVariantMap properties{};
    QList<TrayMenuNode> children{};
};
QDBusArgument& operator<<(QDBusArgument& argument, const TrayMenuNode& node);
const QDBusArgument& operator>>(const QDBusArgument& argument, TrayMenuNode& node);

/// Before any of them travels.
void registerTrayTypes();

} // namespace quillorn

Q_DECLARE_METATYPE(quillorn::TrayPixmap)
Q_DECLARE_METATYPE(quillorn::TrayToolTip)
Q_DECLARE_METATYPE(quillorn::TrayMenuNode)
Q_DECLARE_METATYPE(quillorn::TrayMenuRow)
Q_DECLARE_METATYPE(quillorn::TrayMenuEvent)
