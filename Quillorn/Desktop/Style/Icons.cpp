#include "Desktop/Style/Icons.h"

#include <QCache>
#include <QFile>
#include <QFont>
#include <QPainter>
#include <QQuickWindow>
#include <QSGImageNode>
#include <QSvgRenderer>
#include <algorithm>
#include <cmath>
#include <memory>

namespace quillorn {

namespace {

constexpr int largestSide = 512; // in the screen's pixels
constexpr int imagesKept = 400;  // several times of what all screens show

} // namespace

void Icon::setSide(int side) {
    if (side == m_side)
        return;
    m_side = side;
    setImplicitSize(side, side);
    redraw();
}

void Icon::redraw() {
    m_isStale = true;
    setFlag(ItemHasContents, !key().isEmpty());
    update();
    Q_EMIT changed();
}

void Icon::itemChange(ItemChange change, const ItemChangeData& data) {
    if (change == ItemDevicePixelRatioHasChanged) {
        m_isStale = true;
        update();
    }
    QQuickItem::itemChange(change, data);
}

QImage Icon::image(int pixels) const {
    static QCache<QString, QImage> images(imagesKept);
    const QString name = key() + '/' + QString::number(pixels);
    if (const QImage* kept = images.object(name))
        return *kept;
    QImage image(pixels, pixels, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    draw(painter, image.rect());
    painter.end();
    images.insert(name, new QImage(image));
    return image;
}

QSGNode* Icon::updatePaintNode(QSGNode* old, UpdatePaintNodeData*) {
    std::unique_ptr<QSGNode> former(old);
    if (key().isEmpty() || width() <= 0)
        return nullptr;
    auto* node = static_cast<QSGImageNode*>(former.release());
    if (node == nullptr) {
        node = window()->createImageNode();
        node->setOwnsTexture(true);
        m_isStale = true;
    }
    if (m_isStale) {
        const int pixels = static_cast<int>(std::ceil(m_side * window()->effectiveDevicePixelRatio()));
        node->setTexture(window()->createTextureFromImage(image(std::clamp(pixels, 1, largestSide)),
                                                          QQuickWindow::TextureCanUseAtlas));
        m_isStale = false;
    }
    node->setRect(boundingRect());
    return node;
}

void SymbolIcon::setName(const QString& name) {
    if (name == m_name)
        return;
    m_name = name;
    redraw();
}

void SymbolIcon::setColor(QColor color) {
    if (color == m_color)
        return;
    m_color = color;
    redraw();
}

QString SymbolIcon::key() const {
    return m_name.isEmpty() ? QString() : m_name + m_color.name(QColor::HexArgb);
}

void SymbolIcon::draw(QPainter& painter, const QRect& square) const {
    QFile file(":/symbols/" + m_name);
    if (!file.open(QIODevice::ReadOnly)) {
        qWarning("There is no symbol %s", qPrintable(m_name));
        return;
    }
    QSvgRenderer renderer(file.readAll().replace("currentColor", m_color.name().toLatin1()));
    painter.setOpacity(m_color.alphaF());
    renderer.render(&painter, square);
}

void MarkIcon::setMark(const QString& mark) {
    if (mark == m_mark)
        return;
    m_mark = mark;
    setVisible(!mark.isEmpty());
    redraw();
}

void MarkIcon::draw(QPainter& painter, const QRect& square) const {
    QFont font("Noto Color Emoji");
    font.setPixelSize(std::max(1, square.height() * 4 / 5));
    painter.setFont(font);
    painter.drawText(square, Qt::AlignCenter, m_mark);
}

} // namespace quillorn
