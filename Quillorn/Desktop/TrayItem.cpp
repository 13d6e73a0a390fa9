#include "Desktop/TrayItem.h"

#include "Desktop/Variants.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCall>
#include <QImage>
#include <QPainter>
#include <QSvgRenderer>

namespace quillorn {

namespace {

constexpr auto itemPath = "/StatusNotifierItem";

/// In the sizes of trays on usual and on fine screens.
TrayPixmaps drawnIcon() {
    TrayPixmaps icon;
    QSvgRenderer renderer(QString(":/icon/com.quillorn.Desktop.svg"));
    for (const int side : {16, 22, 32, 48}) {
        QImage image(side, side, QImage::Format_ARGB32);
        image.fill(Qt::transparent);
        QPainter painter(&image);
        renderer.render(&painter);
        painter.end();
        TrayPixmap pixmap{.width = side, .height = side};
        for (int y = 0; y < side; ++y)
            for (int x = 0; x < side; ++x) {
                const QRgb point = image.pixel(x, y);
                for (const int part : {qAlpha(point), qRed(point), qGreen(point), qBlue(point)})
                    pixmap.bytes.append(static_cast<char>(part));
            }
        icon.append(pixmap);
    }
    return icon;
}

} // namespace

TrayItem::TrayItem(const TimerToolbarView::Environment& environment, TrayView::Actions actions)
    : m_icon(drawnIcon()),
      m_view(environment, std::move(actions)),
      m_task(toQString(m_view.task())),
      m_changes(m_view.observe([this] { changed(); })) {
    QDBusConnection bus = QDBusConnection::sessionBus();
    bus.registerObject(itemPath, this, QDBusConnection::ExportAllContents);
    bus.registerObject(menu().path(), &m_menu, QDBusConnection::ExportAllContents);
    QDBusMessage call = QDBusMessage::createMethodCall("org.kde.StatusNotifierWatcher", "/StatusNotifierWatcher",
                                                       "org.kde.StatusNotifierWatcher", "RegisterStatusNotifierItem");
    bus.asyncCall(call << bus.baseService());
}

TrayItem::~TrayItem() {
    QDBusConnection bus = QDBusConnection::sessionBus();
    bus.unregisterObject(itemPath);
    bus.unregisterObject(menu().path());
}

QString TrayItem::title() const {
    const QString name = toQString(TrayView::name);
    return m_view.task().empty() ? name : name + " — " + toQString(m_view.task());
}

TrayToolTip TrayItem::toolTip() const {
    TrayToolTip tip{.title = toQString(TrayView::name)};
    // Hosts read markup there.
    if (!m_view.task().empty())
        tip.text = toQString(m_view.task() + " — " + m_view.time()).toHtmlEscaped();
    return tip;
}

void TrayItem::changed() {
    Q_EMIT NewToolTip();
    if (const QString task = toQString(m_view.task()); std::exchange(m_task, task) != task) {
        Q_EMIT NewTitle();
        m_menu.update();
    }
}

void TrayItem::Activate(int, int) {
    m_view.actions().show();
}

} // namespace quillorn
