#pragma once

#include "Desktop/TrayTypes.h"
#include "Views/TrayView.h"

#include <QObject>
#include <QStringList>
#include <map>

namespace quillorn {

/// The menu of the tray's item, com.canonical.dbusmenu, as the host of the tray reads and draws it. It is made anew
/// each time that it is opened.
class TrayMenu final : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "com.canonical.dbusmenu")
    Q_PROPERTY(uint Version READ version)
    Q_PROPERTY(QString TextDirection READ textDirection)
    Q_PROPERTY(QString Status READ status)
    Q_PROPERTY(QStringList IconThemePath READ iconThemePath)

  public:
    explicit TrayMenu(TrayView& view);

    static uint version() { return 3; }
    static QString textDirection();
    static QString status() { return "normal"; }
    static QStringList iconThemePath() { return {}; }
    /// Tells the host that the menu has become another.
    void update();

  public Q_SLOTS:
    uint GetLayout(int parent, int depth, const QStringList& names, quillorn::TrayMenuNode& layout);
    QList<quillorn::TrayMenuRow> GetGroupProperties(const QList<int>& ids, const QStringList& names);
    QDBusVariant GetProperty(int id, const QString& name);
    void Event(int id, const QString& event, const QDBusVariant& data, uint time);
    QList<int> EventGroup(const QList<quillorn::TrayMenuEvent>& events);
    bool AboutToShow(int id);
    QList<int> AboutToShowGroup(const QList<int>& ids, QList<int>& errors);

  Q_SIGNALS:
    void LayoutUpdated(uint revision, int parent);

  private:
    struct Node {
        QVariantMap properties;
        QList<int> children;
        std::function<void()> action;
    };

    void forget();
    void build();
    QList<int> add(const std::vector<TrayView::Item>& items);
    TrayMenuNode node(int id, int depth) const;

    TrayView& m_view;
    /// Empty until the host reads them; by ids that are not given twice, so that a click never means another item.
    std::map<int, Node> m_nodes;
    /// Those before, which a host may still show.
    std::map<int, Node> m_former;
    int m_lastId = 0;
    uint m_revision = 0;
};

} // namespace quillorn
