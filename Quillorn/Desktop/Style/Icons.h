#pragma once

#include <QColor>
#include <QQuickItem>
#include <QString>
#include <QtQml/qqmlregistration.h>

class QPainter;

namespace quillorn {

/// A square picture, as sharp as the screen. One object where an image would be several, as lists have hundreds.
class Icon : public QQuickItem {
    Q_OBJECT
    QML_ANONYMOUS
    /// Of a side, in the window's pixels.
    Q_PROPERTY(int size READ side WRITE setSide NOTIFY changed FINAL)

  public:
    int side() const { return m_side; }
    void setSide(int side);

  Q_SIGNALS:
    void changed();

  protected:
    Icon() { setImplicitSize(m_side, m_side); }

    void redraw();
    /// What pictures are kept by; empty where there is nothing to draw.
    virtual QString key() const = 0;
    virtual void draw(QPainter& painter, const QRect& square) const = 0;

    QSGNode* updatePaintNode(QSGNode* old, UpdatePaintNodeData* data) override;
    void itemChange(ItemChange change, const ItemChangeData& data) override;

  private:
    QImage image(int pixels) const;

    int m_side = 16;
    bool m_isStale = true;
};

// The tools that read the types know a base class by its whole name only.

/// One of the application's symbols, drawn in a colour.
class SymbolIcon : public quillorn::Icon {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QString name READ name WRITE setName NOTIFY changed FINAL)
    Q_PROPERTY(QColor color READ color WRITE setColor NOTIFY changed FINAL)

  public:
    const QString& name() const { return m_name; }
    void setName(const QString& name);
    QColor color() const { return m_color; }
    void setColor(QColor color);

  private:
    QString key() const override;
    void draw(QPainter& painter, const QRect& square) const override;

    QString m_name;
    QColor m_color;
};

/// An emoji that says how urgent something is; gone where there is none.
class MarkIcon : public quillorn::Icon {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QString mark READ mark WRITE setMark NOTIFY changed FINAL)

  public:
    MarkIcon() { setVisible(false); }

    const QString& mark() const { return m_mark; }
    void setMark(const QString& mark);

  private:
    QString key() const override { return m_mark; }
    void draw(QPainter& painter, const QRect& square) const override;

    QString m_mark;
};

} // namespace quillorn
