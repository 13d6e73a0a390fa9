#include "Desktop/SymbolProvider.h"

#include <QColor>
#include <QFile>
#include <QPainter>
#include <QSvgRenderer>

namespace quillorn {

namespace {

constexpr int defaultSize = 16;
constexpr int largestSize = 512;

} // namespace

QImage SymbolProvider::requestImage(const QString& id, QSize* size, const QSize& requestedSize) {
    const qsizetype slash = id.lastIndexOf('/');
    const QColor color("#" + id.mid(slash + 1));
    const int side = std::clamp(requestedSize.width() > 0 ? requestedSize.width() : defaultSize, 1, largestSize);
    QImage image(side, side, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    *size = image.size();
    QFile file(":/symbols/" + id.left(slash));
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

} // namespace quillorn
