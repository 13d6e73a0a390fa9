#pragma once

#include <QQuickImageProvider>

namespace quillorn {

/// The application's symbols as images: image://symbol/NAME/RRGGBB. One that isn't known is empty.
class SymbolProvider final : public QQuickImageProvider {
  public:
    SymbolProvider() : QQuickImageProvider(QQuickImageProvider::Image) {}

    QImage requestImage(const QString& id, QSize* size, const QSize& requestedSize) override;
};

/// Emoji as images: image://mark/EMOJI. As text each drawing would decode the font's picture anew.
class MarkProvider final : public QQuickImageProvider {
  public:
    MarkProvider() : QQuickImageProvider(QQuickImageProvider::Image) {}

    QImage requestImage(const QString& id, QSize* size, const QSize& requestedSize) override;
};

} // namespace quillorn
