#include "Desktop/Appearance.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>
#include <QGuiApplication>
#include <QPalette>
#include <algorithm>

namespace quillorn {

namespace {

constexpr auto service = "org.freedesktop.portal.Desktop";
constexpr auto path = "/org/freedesktop/portal/desktop";
constexpr auto interface = "org.freedesktop.portal.Settings";
constexpr auto appearance = "org.freedesktop.appearance";
constexpr auto gnome = "org.gnome.desktop.interface";

/// The portal answers in a variant inside of another.
QVariant unwrapped(QVariant value) {
    while (value.canConvert<QDBusVariant>())
        value = value.value<QDBusVariant>().variant();
    return value;
}

} // namespace

Appearance::Appearance(Scheme scheme)
    : m_isFixed(scheme != Scheme::system),
      m_scheme(scheme == Scheme::dark ? Scheme::dark : Scheme::light) {
    setPalette();
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected())
        return;
    bus.connect(service, path, interface, "SettingChanged", this, SLOT(settingChanged(QString, QString, QDBusVariant)));
    for (const char* key : {"color-scheme", "contrast"})
        read(appearance, key);
    for (const char* key : {"enable-animations", "text-scaling-factor"})
        read(gnome, key);
}

void Appearance::read(const QString& group, const QString& key) {
    QDBusMessage call = QDBusMessage::createMethodCall(service, path, interface, "Read");
    call << group << key;
    auto* watcher = new QDBusPendingCallWatcher(QDBusConnection::sessionBus().asyncCall(call), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, key](QDBusPendingCallWatcher* answered) {
        const QDBusPendingReply<QDBusVariant> reply = *answered;
        if (!reply.isError())
            take(key, unwrapped(reply.value().variant()));
        answered->deleteLater();
    });
}

void Appearance::settingChanged(const QString& group, const QString& key, const QDBusVariant& value) {
    if (group == appearance || group == gnome)
        take(key, unwrapped(value.variant()));
}

void Appearance::take(const QString& key, const QVariant& value) {
    constexpr unsigned dark = 1;
    constexpr unsigned high = 1;
    if (key == "color-scheme" && !m_isFixed)
        m_scheme = value.toUInt() == dark ? Scheme::dark : Scheme::light;
    else if (key == "contrast")
        m_isHighContrast = value.toUInt() == high;
    else if (key == "enable-animations")
        m_isStill = !value.toBool();
    else if (key == "text-scaling-factor")
        m_textScale = std::clamp(value.toDouble(), 0.5, 3.0);
    else
        return;
    setPalette();
    Q_EMIT changed();
}

void Appearance::setPalette() const {
    QPalette palette;
    palette.setColor(QPalette::Window, QColor(isDark() ? "#232429" : "#F3F3F6"));
    palette.setColor(QPalette::WindowText, QColor(isDark() ? "#ECECF1" : "#1C1C22"));
    palette.setColor(QPalette::Base, QColor(isDark() ? "#1B1C20" : "#FFFFFF"));
    palette.setColor(QPalette::Text, QColor(isDark() ? "#ECECF1" : "#1C1C22"));
    QGuiApplication::setPalette(palette);
}

} // namespace quillorn
