#include "Desktop/SymbolProvider.h"

#include <QColor>
#include <QFile>
#include <QFont>
#include <QPainter>
#include <QSvgRenderer>
#include <QUrl>
#include <algorithm>

namespace quillorn {

namespace {

constexpr int largestSize = 512;

/// A square of the size that was asked for.
QImage emptyImage(QSize* size, const QSize& requestedSize) {
    const int side = std::clamp(requestedSize.width(), 1, largestSize);
    QImage image(side, side, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    *size = image.size();
    return image;
}

} // namespace

QImage SymbolProvider::requestImage(const QString& id, QSize* size, const QSize& requestedSize) {
    const QString name = id.section('/', 0, -2);
    const QColor color("#" + id.section('/', -1));
    QImage image = emptyImage(size, requestedSize);
    QFile file(":/symbols/" + name);
    if (!file.open(QIODevice::ReadOnly)) {
        qWarning("There is no symbol %s", qPrintable(id));
        return image;
    }
    QSvgRenderer renderer(file.readAll().replace("currentColor", color.name().toLatin1()));
    QPainter painter(&image);
    painter.setOpacity(color.alphaF());
    renderer.render(&painter);
    return image;
}

QImage MarkProvider::requestImage(const QString& id, QSize* size, const QSize& requestedSize) {
    QImage image = emptyImage(size, requestedSize);
    QFont font("Noto Color Emoji");
    font.setPixelSize(std::max(1, image.height() * 4 / 5));
    QPainter painter(&image);
    painter.setFont(font);
    painter.drawText(image.rect(), Qt::AlignCenter, QUrl::fromPercentEncoding(id.toUtf8()));
    return image;
}

} // namespace quillorn
